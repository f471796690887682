#pragma once

#include "targets/fit_survey.h"
#include "targets/group_fit.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace tarvo {

// The residual of a survey while the models of its targets are taken off, one after the other: what is left, with a
// background of its own, smoothed, and where it is largest.
class AnomalyField {
public:
    // residual: by sensor from 1 and by record; its nulls are left out. window: metres, of the background.
    // smoothing: metres of track. pause: called now and then, where it is given.
    AnomalyField(const FitSurvey& survey, const std::vector<const double*>& residual, double window, double smoothing,
                 const std::function<void()>& pause);

    // nT: 1.4826 x median of what is left, without its sign.
    double noise() const;

    // Takes a dipole (survey grid, heights up) off the field of every reading that it bends.
    void take_off(const Dipole& dipole, const FieldDirection& field);

    // What is left of the readings' field, nT, without a background of its own; kNull where it is left out.
    double cleaned(int sensor, std::int32_t record) const { return cleaned_[at(sensor)][at(record)]; }

    struct Peak {
        int sensor = 0;
        std::int32_t record = 0;
        double size = 0; // nT
    };
    // The largest value that is open; none: nothing is.
    std::optional<Peak> largest() const;
    void close(double east, double north, double radius); // what lies there is looked at no more
    void open_all();

private:
    static constexpr std::int32_t kBlock = 256; // records

    static std::size_t at(std::int32_t number) { return static_cast<std::size_t>(number); }
    void renew(int sensor, std::int32_t line, std::int32_t from, std::int32_t to);
    void take_background(int sensor, std::int32_t line, std::int32_t from, std::int32_t to);
    void smooth(int sensor, std::int32_t line, std::int32_t from, std::int32_t to);
    void find_block_peaks(int sensor, std::int32_t from, std::int32_t to);

    const FitSurvey& survey_;
    double half_window_;
    double half_smoothing_;
    std::vector<std::vector<double>> cleaned_;  // by sensor and record, from 1: nT, total field less the models
    std::vector<std::vector<double>> left_;     // likewise: less its background
    std::vector<std::vector<double>> smoothed_; // likewise
    std::vector<std::vector<bool>> closed_;     // likewise
    std::vector<std::vector<Peak>> peaks_;      // by sensor and block
};

} // namespace tarvo
