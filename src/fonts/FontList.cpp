#include "fonts/FontList.h"

#include <utility>

#include "common/NativeText.h"

namespace brackwell {

using namespace Qt::StringLiterals;

void FontList::SetFonts(std::vector<std::string> names) {
  beginResetModel();
  mFonts.clear();
  mFonts.reserve(names.size());
  for (std::string& name : names) mFonts.push_back({.Name = std::move(name), .IsChecked = true});
  endResetModel();
}

void FontList::CheckAll(bool checked) {
  if (mFonts.empty()) return;
  for (Font& font : mFonts) font.IsChecked = checked;
  Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::CheckStateRole});
}

std::vector<std::string> FontList::CheckedFonts() const {
  std::vector<std::string> names;
  for (const Font& font : mFonts)
    if (font.IsChecked) names.push_back(font.Name);
  return names;
}

int FontList::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(mFonts.size());
}

int FontList::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : 1; }

QVariant FontList::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Font& font = mFonts[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return ToShownText(font.Name);
    case Qt::CheckStateRole:
      return font.IsChecked ? Qt::Checked : Qt::Unchecked;
    default:
      return {};
  }
}

bool FontList::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::CheckStateRole) return false;
  mFonts[static_cast<std::size_t>(index.row())].IsChecked = value.toInt() == Qt::Checked;
  Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
  return true;
}

Qt::ItemFlags FontList::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

QVariant FontList::headerData(int /*section*/, Qt::Orientation orientation, int role) const {
  return orientation == Qt::Horizontal && role == Qt::DisplayRole ? QVariant(u"Font"_s) : QVariant();
}

}  // namespace brackwell
