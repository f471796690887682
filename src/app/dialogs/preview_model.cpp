#include "app/dialogs/preview_model.h"

#include "app/common/texts.h"

#include <QFont>

#include <algorithm>

namespace tarvo {

namespace {

QColor colour_of(std::int32_t bgr)
{
    return {bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF};
}

// A little of the colour over the background, so that text stays readable on light and dark palettes.
QColor tint(const QColor& colour, const QColor& background, double share)
{
    const auto mix = [share](int of, int over) { return static_cast<int>(of * share + over * (1 - share)); };
    return {mix(colour.red(), background.red()), mix(colour.green(), background.green()),
            mix(colour.blue(), background.blue())};
}

} // namespace

void PreviewModel::show_preview(DataPreview preview, const QPalette& palette)
{
    beginResetModel();
    preview_ = std::move(preview);
    palette_ = palette;
    columns_ = preview_.columns.count();
    for (const PreviewLine& line : preview_.lines) columns_ = std::max(columns_, static_cast<int>(line.fields.size()));
    columns_ += columns_read();
    endResetModel();
}

bool PreviewModel::is_recognised(int column) const
{
    if (column < columns_read()) return true;
    const auto at = static_cast<std::size_t>(column - columns_read());
    return at < preview_.roles.size() && !preview_.roles[at].caption.empty();
}

int PreviewModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(preview_.lines.size());
}

int PreviewModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : columns_;
}

QVariant PreviewModel::background(int column, PreviewLineKind kind) const
{
    if (kind == PreviewLineKind::before_header || !is_recognised(column) || column < columns_read()) return {};
    if (palette_.color(QPalette::Base).lightness() == 0) { // the night's, which has no other light than red
        return tint(palette_.color(QPalette::Highlight), palette_.color(QPalette::Base),
                    kind == PreviewLineKind::header ? 0.7 : 0.3);
    }
    const std::int32_t slot_colour = preview_.roles[static_cast<std::size_t>(column - columns_read())].colour;
    const QColor colour = slot_colour == 0 ? palette_.color(QPalette::Highlight) : colour_of(slot_colour);
    return tint(colour, palette_.color(QPalette::Base), kind == PreviewLineKind::header ? 0.4 : 0.15);
}

// A line before the header begins in the first column, whatever is read of the others.
QString PreviewModel::text_at(const PreviewLine& line, int column) const
{
    if (column < columns_read() && line.kind != PreviewLineKind::before_header) {
        const LineReadings& readings = line.readings;
        if (line.kind == PreviewLineKind::header) return column == 0 ? tr("as read") : QString();
        return to_qt(column == 0 ? readings.time : column == 1 ? readings.east : readings.north);
    }
    const int shift = line.kind == PreviewLineKind::before_header ? 0 : columns_read();
    const auto field = static_cast<std::size_t>(column - shift);
    return field < line.fields.size() ? to_qt(line.fields[field]) : QString();
}

FieldReading PreviewModel::reading_at(const PreviewLine& line, int column) const
{
    const auto field = static_cast<std::size_t>(column - columns_read());
    const bool is_read = column >= columns_read() && field < line.readings.fields.size();
    return is_read ? line.readings.fields[field] : FieldReading::plain;
}

QVariant PreviewModel::foreground(const PreviewLine& line, int column) const
{
    const QColor red = tint(Qt::red, palette_.color(QPalette::Text), 0.6);
    if (line.kind == PreviewLineKind::rejected) return red;
    if (line.kind == PreviewLineKind::before_header) return palette_.color(QPalette::PlaceholderText);
    const FieldReading reading = reading_at(line, column);
    if (reading == FieldReading::odd) return red;
    return reading == FieldReading::null ? QVariant(palette_.color(QPalette::PlaceholderText)) : QVariant();
}

QString PreviewModel::tip_at(const PreviewLine& line, int column) const
{
    if (line.kind == PreviewLineKind::rejected) return tr("This line would be rejected: %1").arg(to_qt(line.fault));
    switch (reading_at(line, column)) {
    case FieldReading::odd:
        return tr("This does not fit: it is neither a number nor a place as the definitions expect");
    case FieldReading::null: return tr("This counts as nothing");
    case FieldReading::plain: break;
    }
    if (!is_recognised(column)) return {};
    if (column < columns_read()) return tr("What a run reads of this line");
    return to_qt(preview_.roles[static_cast<std::size_t>(column - columns_read())].caption);
}

QVariant PreviewModel::data(const QModelIndex& index, int role) const
{
    const PreviewLine& line = preview_.lines.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Qt::DisplayRole: return text_at(line, index.column());
    case Qt::BackgroundRole: return background(index.column(), line.kind);
    case Qt::ForegroundRole: return foreground(line, index.column());
    case Qt::FontRole: {
        QFont font;
        font.setBold(line.kind == PreviewLineKind::header);
        font.setItalic(line.kind != PreviewLineKind::before_header && index.column() < columns_read());
        return font;
    }
    case Qt::ToolTipRole: {
        const QString tip = tip_at(line, index.column());
        return tip.isEmpty() ? QVariant() : QVariant(tip);
    }
    default: return {};
    }
}

QVariant PreviewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return section + 1;
    if (section < columns_read()) return section == 0 ? tr("Time") : section == 1 ? tr("East") : tr("North");
    if (!is_recognised(section)) return QString();
    return to_qt(preview_.roles[static_cast<std::size_t>(section - columns_read())].caption);
}

} // namespace tarvo
