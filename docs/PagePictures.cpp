// make_manual_pictures FROM TO [NAME=PICTURE...]: takes over the pictures of windows that the manual has, as
// small as they are good for a page. Those in light colours, at most 960 points wide; NAME is what the manual
// calls PICTURE.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>

#include <QImage>
#include <QImageWriter>
#include <QString>

namespace {

namespace fs = std::filesystem;

// Six bits of a channel are more than a window's colours need, and make a shorter file.
QImage Reduced(const QImage& original) {
  constexpr int widest = 960;
  constexpr int step = 4;
  QImage image =
      original.width() > widest ? original.scaledToWidth(widest, Qt::SmoothTransformation) : original;
  image = image.convertToFormat(QImage::Format_RGB888);
  const auto rounded = [](uchar value) {
    return static_cast<uchar>(std::min((value + step / 2) / step * step, 255));
  };
  for (int row = 0; row < image.height(); ++row) {
    uchar* line = image.scanLine(row);
    std::transform(line, line + static_cast<std::ptrdiff_t>(image.width()) * 3, line, rounded);
  }
  return image;
}

bool TakeOver(const fs::path& from, const fs::path& to) {
  const QImage image(QString::fromStdString(from.string()));
  if (image.isNull()) return false;
  QImageWriter writer(QString::fromStdString(to.string()), "png");
  writer.setCompression(100);
  return writer.write(Reduced(image));
}

}  // namespace

int main(int count, char** words) {
  if (count < 4) {
    std::cerr << "usage: make_manual_pictures FROM TO NAME[=PICTURE]...\n";
    return 2;
  }
  const fs::path from = words[1], to = words[2];
  int missing = 0;
  for (int i = 3; i < count; ++i) {
    const std::string wish = words[i];
    const auto equal = wish.find('=');
    const std::string name = wish.substr(0, equal);
    const std::string picture = equal == std::string::npos ? name : wish.substr(equal + 1);
    if (TakeOver(from / (picture + ".png"), to / (name + ".png"))) continue;
    std::cerr << "no picture of " << name << ": " << (from / (picture + ".png")).string() << '\n';
    ++missing;
  }
  return missing == 0 ? 0 : 1;
}
