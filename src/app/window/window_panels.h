#pragma once

namespace tarvo {

class ColourBarPanel;
class DialPanel;
class HeaderBox;
class HintBar;
class LivePanel;
class PickPanel;
class ProfileGraphs;
class RunBar;
class TrackPanel;

// What the main window is made of. It owns them; the objects that show runs and picks speak to them.
struct WindowPanels {
    HeaderBox* header = nullptr;
    RunBar* run_bar = nullptr;
    HintBar* hints = nullptr;
    LivePanel* live = nullptr;
    TrackPanel* track = nullptr;
    DialPanel* dials = nullptr;
    ColourBarPanel* bars = nullptr;
    ProfileGraphs* graphs = nullptr;
    PickPanel* picks = nullptr;
};

} // namespace tarvo
