// The window as the display of the pick work.

#include "app/main_window.h"

namespace tarvo {

void MainWindow::show_pick_controls(const PickControls&) {}

void MainWindow::redraw_picks()
{
    view_.redraw_picks();
}

void MainWindow::show_sample(std::int32_t sample_index)
{
    view_.make_current(sample_index, Recentre::yes);
}

void MainWindow::open_new_pick_dialog() {}

void MainWindow::show_new_pick_marker(const PickLocation& location)
{
    view_.show_new_pick_marker({location.x, location.y});
}

void MainWindow::clear_new_pick_marker()
{
    view_.clear_new_pick_marker();
}

void MainWindow::display_pick_list() {}

void MainWindow::display_pick_item(std::int32_t) {}

} // namespace tarvo
