#include "live/live_recording.h"

#include "definitions/definitions_file.h"

#include <utility>

namespace tarvo {

LiveRecording::~LiveRecording()
{
    finish();
    wait_until_settled();
    give_up();
}

void LiveRecording::start(const std::string& folder, const PortableSurvey& survey)
{
    finish();
    const RecordingTexts texts{header_line_of(survey.columns), exact_definitions_text(survey.definitions, 1)};
    current_ = std::make_shared<RecordingWriter>(folder, texts, pace_);
    current_->begin_writing();
}

void LiveRecording::append(std::string_view data_line)
{
    if (current_) current_->append(data_line);
}

bool LiveRecording::hand_over()
{
    return !current_ || current_->hand_over();
}

void LiveRecording::finish()
{
    if (!current_) return;
    last_file_name_ = current_->file_name();
    current_->finish();
    closing_.push_back(std::move(current_));
}

void LiveRecording::try_again(const std::string& folder)
{
    if (current_) current_->try_again(folder);
    for (const Writer& writer : closing_) writer->try_again(folder);
}

bool LiveRecording::is_active() const
{
    return current_ && !current_->is_refused();
}

bool LiveRecording::is_settled()
{
    std::erase_if(closing_, [this](const Writer& writer) {
        keep_warnings_of(*writer);
        return writer->is_settled();
    });
    return !current_ && closing_.empty();
}

bool LiveRecording::wait_until_settled()
{
    for (const Writer& writer : closing_) {
        if (!writer->wait_until_settled()) return false;
    }
    return is_settled();
}

void LiveRecording::give_up()
{
    finish();
    for (const Writer& writer : closing_) writer->give_up();
}

std::string LiveRecording::data_file_name() const
{
    return current_ ? current_->file_name() : last_file_name_;
}

std::optional<std::string> LiveRecording::take_warning()
{
    is_settled(); // takes those of recordings that are closing
    if (current_) keep_warnings_of(*current_);
    return std::exchange(warnings_, std::nullopt);
}

void LiveRecording::keep_warnings_of(RecordingWriter& writer)
{
    const std::optional<std::string> warning = writer.take_warning();
    if (warning) warnings_ = warnings_ ? *warnings_ + '\n' + *warning : *warning;
}

std::string header_line_of(const std::vector<std::string>& columns)
{
    std::string line;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (column > 0) line += ',';
        const std::string& name = columns[column];
        const bool quoted = name.find_first_of(" ;'") != std::string::npos;
        line += quoted ? '"' + name + '"' : name;
    }
    return line;
}

} // namespace tarvo
