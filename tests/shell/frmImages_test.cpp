#include "shell/frmImages.h"

#include <QImage>
#include <QTest>

#include "support/IsolatedSettings.h"

namespace brackwell {

using namespace Qt::StringLiterals;

class frmImagesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void TheKeysInTheirOrder();
  void EveryPictureIsDrawnForEverySize();
  void APictureAndItsKeyFindEachOther();
  void WhatIsNotThere();
  void DensePicturesAreSharp();
};

void frmImagesTest::TheKeysInTheirOrder() {
  const frmImages images;
  QStringList keys;
  for (const frmImages::ListImage& image : images.imlIcons16) keys.append(image.Key);
  QCOMPARE(
      keys.join(u' '),
      u"DirCompare RenImages DirDisplay Replace FontDisplay Drive Print PrintX FolderOpen File ArrowGreenDbl "
      "ArrowRedDbl ArrowYellowDbl ArrowRedL ArrowRedR Checkmark CheckAll UncheckAll"_s);
  QCOMPARE(images.windowTitle(), u"Images"_s);
}

void frmImagesTest::EveryPictureIsDrawnForEverySize() {
  const frmImages images;
  QList<QIcon> pictures = {images.imgCheckOFF, images.imgCheckON, images.imgMoveUp, images.imgMoveDown};
  for (const frmImages::ListImage& image : images.imlIcons16) pictures.append(image.Picture);
  for (const QIcon& picture : pictures) {
    QStringList sizes;
    for (const int size : {16, 32, 48})
      sizes.append(QString::number(picture.pixmap(QSize(size, size), 1.0).width()));
    QCOMPARE(sizes.join(u' '), u"16 32 48"_s);
  }
}

void frmImagesTest::APictureAndItsKeyFindEachOther() {
  const frmImages images;
  for (const frmImages::ListImage& image : images.imlIcons16) {
    const QIcon copy = images.GetPicture(image.Key);
    QCOMPARE(copy.cacheKey(), images.GetPicture(image.Key).cacheKey());
    QCOMPARE(images.MatchPicture(copy), image.Key);
  }
}

void frmImagesTest::WhatIsNotThere() {
  const frmImages images;
  QVERIFY(images.GetPicture(u"None"_s).isNull());
  QVERIFY(images.GetPicture(u"print"_s).isNull());
  QCOMPARE(images.MatchPicture(QIcon()), QString());
  QCOMPARE(images.MatchPicture(images.imgCheckON), QString());
}

void frmImagesTest::DensePicturesAreSharp() {
  const frmImages images;
  const QPixmap pixmap = images.GetPicture(u"File"_s).pixmap(QSize(16, 16), 2.0);
  QCOMPARE(pixmap.size(), QSize(32, 32));
  QImage shown = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
  shown.setDevicePixelRatio(1);
  QCOMPARE(shown, QImage(u":/icons/32/File.png"_s).convertToFormat(QImage::Format_ARGB32));
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmImagesTest)
#include "frmImages_test.moc"
