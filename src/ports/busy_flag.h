#pragma once

namespace tarvo {

// Sets a flag as long as an operation is under way, however it ends.
class BusyFlag {
public:
    explicit BusyFlag(bool& flag) : flag_(flag) { flag_ = true; }
    BusyFlag(const BusyFlag&) = delete;
    BusyFlag& operator=(const BusyFlag&) = delete;
    ~BusyFlag() { flag_ = false; }

private:
    bool& flag_;
};

} // namespace tarvo
