#pragma once

// The page: one A4 sheet in one of two orientations, four margins in
// centimetres. Everything that lays out or prints a document reads these
// numbers, kept under section "Margini" of the settings.

#include <QString>

namespace tornelia {

class SettingsStore;

// The program measures the page in twips with this many to the centimetre.
inline constexpr double kTwipsPerCm = 567.0;
// A4 in twips, upright.
inline constexpr double kSheetShortTwips = 11907.0;
inline constexpr double kSheetLongTwips = 16839.9;

struct PageSettings {
    double MargineSup = 1;
    double MargineInf = 1;
    double MargineSin = 2;
    double MargineDes = 2;
    int Orientamento = 1;  // 1 upright, 2 landscape

    bool operator==(const PageSettings&) const = default;
};

// Reads the five values, each with its default when missing or unreadable.
void CaricaMargini(const SettingsStore& settings, PageSettings& page);
void SalvaMargini(SettingsStore& settings, const PageSettings& page);

// The sheet's size in twips for the orientation: anything but 1 is landscape.
double sheetWidthTwips(int orientamento);
double sheetHeightTwips(int orientamento);
// The width of the printable line in twips: where the text wraps on paper.
double larghezzaTesto(const PageSettings& page);

// A number as the settings hold it: the shortest text that reads back the same.
QString marginText(double value);
// Reads a number typed with a dot or a comma; false when the text is none.
bool parseMargin(const QString& text, double& value);

}  // namespace tornelia
