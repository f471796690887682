#pragma once

#include "live/pipe_server.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

namespace tarvo {

// Lets the toolkit's event loop drive the pipe's server.
class PipeService : public QObject {
    Q_OBJECT

public:
    PipeService(PipeServer::Handler handler, PipeServer::Consent may_reply, QObject* parent = nullptr);

    PipeServer& server() { return server_; }

private:
    void serve();

    PipeServer server_;
    QSocketNotifier notifier_;
    QTimer again_; // requests or replies are left, other events have their turn first
};

} // namespace tarvo
