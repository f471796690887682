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
    endResetModel();
}

bool PreviewModel::is_recognised(int column) const
{
    const auto at = static_cast<std::size_t>(column);
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
    if (kind == PreviewLineKind::before_header || !is_recognised(column)) return {};
    const std::int32_t slot_colour = preview_.roles[static_cast<std::size_t>(column)].colour;
    const QColor colour = slot_colour == 0 ? palette_.color(QPalette::Highlight) : colour_of(slot_colour);
    return tint(colour, palette_.color(QPalette::Base), kind == PreviewLineKind::header ? 0.4 : 0.15);
}

QVariant PreviewModel::data(const QModelIndex& index, int role) const
{
    const PreviewLine& line = preview_.lines.at(static_cast<std::size_t>(index.row()));
    const auto field = static_cast<std::size_t>(index.column());
    switch (role) {
    case Qt::DisplayRole: return field < line.fields.size() ? to_qt(line.fields[field]) : QString();
    case Qt::BackgroundRole: return background(index.column(), line.kind);
    case Qt::ForegroundRole:
        if (line.kind == PreviewLineKind::rejected) return tint(Qt::red, palette_.color(QPalette::Text), 0.6);
        if (line.kind == PreviewLineKind::before_header) return palette_.color(QPalette::PlaceholderText);
        return {};
    case Qt::FontRole: {
        QFont font;
        font.setBold(line.kind == PreviewLineKind::header);
        return font;
    }
    case Qt::ToolTipRole:
        if (line.kind == PreviewLineKind::rejected) return tr("This line would be rejected: it has no time");
        if (is_recognised(index.column())) return to_qt(preview_.roles[field].caption);
        return {};
    default: return {};
    }
}

QVariant PreviewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return section + 1;
    return is_recognised(section) ? to_qt(preview_.roles[static_cast<std::size_t>(section)].caption) : QString();
}

} // namespace tarvo
