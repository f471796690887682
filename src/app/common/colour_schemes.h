#pragma once

#include <QPalette>
#include <QString>

#include <array>

namespace tarvo {

// The colours of the whole program.
enum class ColourScheme { system, light, dark, night };

struct ColourSchemeEntry {
    ColourScheme scheme;
    const char* key;     // in the settings
    const char* caption; // in the menu
};

inline constexpr std::array<ColourSchemeEntry, 4> kColourSchemes = {
    {{ColourScheme::system, "system", "&System"},
     {ColourScheme::light, "light", "&Light"},
     {ColourScheme::dark, "dark", "&Dark"},
     {ColourScheme::night, "night", "&Night (dim red on black)"}}};

ColourScheme colour_scheme_of(const QString& key); // system for an unknown one

QPalette palette_of(ColourScheme scheme); // of any but the system's

// Puts every window of the program into a scheme's colours.
class ColourSchemes {
public:
    ColourSchemes(); // what the desktop gave the program is the system's scheme

    void apply(ColourScheme scheme);
    ColourScheme current() const { return current_; }

private:
    QString desktop_style_;
    QPalette desktop_palette_;
    ColourScheme current_ = ColourScheme::system;
};

} // namespace tarvo
