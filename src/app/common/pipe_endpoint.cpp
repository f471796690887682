#include "app/common/pipe_endpoint.h"

namespace tarvo {

namespace {

constexpr auto kTimeSlice = std::chrono::milliseconds(8); // of the event loop; buttons wait no longer for it

} // namespace

PipeService::PipeService(PipeServer::Handler handler, PipeServer::Consent may_reply, QObject* parent)
    : QObject(parent), server_(std::move(handler), std::move(may_reply)),
      notifier_(server_.descriptor(), QSocketNotifier::Read)
{
    again_.setSingleShot(true);
    again_.setInterval(0);
    connect(&notifier_, &QSocketNotifier::activated, this, &PipeService::serve);
    connect(&again_, &QTimer::timeout, this, &PipeService::serve);
}

void PipeService::serve()
{
    if (server_.is_serving()) { // a box is open over the request at hand: no use in being told until it is done
        notifier_.setEnabled(false);
        return;
    }
    const bool requests_left = server_.serve(kTimeSlice);
    notifier_.setEnabled(true);
    if (requests_left) again_.start();
}

} // namespace tarvo
