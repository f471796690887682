#pragma once

namespace tarvo {

// Where the program stands between two runs. Everything that a button may do depends on this alone.
enum class RunPhase {
    idle,
    starting, // a file run is being prepared
    clearing, // the displays are being emptied, for a run or for listening: redraws are suppressed
    replaying,
    replay_paused,
    replay_stopping, // a stop was asked for; the loop ends the run when it gets there
    loading,
    load_paused,
    load_stopping,
    live,
    finishing // the run's end is being worked out and drawn
};

// The phase as the questions that are asked of it. At most one of replay, load and live is on.
struct RunFlags {
    bool replay_running = false;
    bool load_running = false;
    bool run_paused = false;
    bool stop_requested = false;
    bool pipe_logging_active = false;
    bool clearing_form = false;

    bool file_run_active() const { return replay_running || load_running; }
    bool any_run_active() const { return file_run_active() || pipe_logging_active; }

    bool operator==(const RunFlags&) const = default;
};

constexpr RunFlags flags_of(RunPhase phase)
{
    RunFlags flags;
    flags.replay_running =
        phase == RunPhase::replaying || phase == RunPhase::replay_paused || phase == RunPhase::replay_stopping;
    flags.load_running =
        phase == RunPhase::loading || phase == RunPhase::load_paused || phase == RunPhase::load_stopping;
    flags.run_paused = phase == RunPhase::replay_paused || phase == RunPhase::load_paused;
    flags.stop_requested = phase == RunPhase::replay_stopping || phase == RunPhase::load_stopping;
    flags.pipe_logging_active = phase == RunPhase::live;
    flags.clearing_form = phase == RunPhase::clearing;
    return flags;
}

} // namespace tarvo
