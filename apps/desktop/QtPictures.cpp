#include "desktop/QtPictures.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

namespace desktop {

bool QtPictures::Copy(const vc::Size& size, const vc::Drawing& drawing) {
  const std::string bytes = Draw(vc::PictureFormat::Png, size, drawing);
  const QImage image =
      QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size()), "PNG");
  if (image.isNull()) return false;
  QGuiApplication::clipboard()->setImage(image);
  return true;
}

}  // namespace desktop
