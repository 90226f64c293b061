#include "shell/frmImages.h"

#include <QSize>

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

QIcon LoadPicture(const QString& name) {
  QIcon picture;
  for (const int size : {16, 32, 48})
    picture.addFile(u":/icons/%1/%2.png"_s.arg(size).arg(name), QSize(size, size));
  return picture;
}

std::vector<frmImages::ListImage> LoadPictures(std::initializer_list<QString> keys) {
  std::vector<frmImages::ListImage> images;
  images.reserve(keys.size());
  for (const QString& key : keys) images.push_back({key, LoadPicture(key)});
  return images;
}

}  // namespace

QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64, 96, 128, 256})
    icon.addFile(u":/icons/app/Brackwell-%1.png"_s.arg(size));
  return icon;
}

frmImages::frmImages()
    : imlIcons16(
          LoadPictures({u"DirCompare"_s, u"RenImages"_s, u"DirDisplay"_s, u"Replace"_s, u"FontDisplay"_s,
                        u"Drive"_s, u"Print"_s, u"PrintX"_s, u"FolderOpen"_s, u"File"_s, u"ArrowGreenDbl"_s,
                        u"ArrowRedDbl"_s, u"ArrowYellowDbl"_s, u"ArrowRedL"_s, u"ArrowRedR"_s, u"Checkmark"_s,
                        u"CheckAll"_s, u"UncheckAll"_s})),
      imgCheckOFF(LoadPicture(u"CheckOff"_s)),
      imgCheckON(LoadPicture(u"CheckOn"_s)),
      imgMoveUp(LoadPicture(u"MoveUp"_s)),
      imgMoveDown(LoadPicture(u"MoveDown"_s)) {
  setObjectName(u"frmImages"_s);
  setWindowTitle(u"Images"_s);
}

QIcon frmImages::GetPicture(const QString& key) const {
  for (const ListImage& image : imlIcons16)
    if (image.Key == key) return image.Picture;
  return {};
}

QString frmImages::MatchPicture(const QIcon& picture) const {
  QString key;
  for (const ListImage& image : imlIcons16)
    if (image.Picture.cacheKey() == picture.cacheKey()) key = image.Key;
  return key;
}

}  // namespace brackwell
