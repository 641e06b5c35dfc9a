// Forms with a table and with a bank, as panels declare them: controls in arrays, a frame a row.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "text/Convert.h"
#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"

namespace support {

// A slider with its number in whole units.
struct Numbered {
  Numbered(vc::Place place, const std::string& caption, const std::string& name, const std::string& unit,
           double highest, int index)
      : slider(place, "sldr" + name, caption, index), text(place, "txt" + name, caption, index) {
    text.shows = &slider;
    text.unit = unit;
    slider.SetRange(0, highest);
    slider.changed = [this] { text.SetText(vc::ShortestText(slider.Position())); };
    text.SetText("0");
  }
  vc::Slider slider;
  vc::TextBox text;
};

struct RowForm {
  struct Row {
    Row(vc::Frame& table, int index)
        : frame(table, "fraControl", "Notch " + std::to_string(index + 1), vc::Arrangement::Rows, index),
          freq(frame, "Freq.", "Freq", "Hz", 8000, index),
          width(frame, "Width", "Width", "Hz", 200, index) {
      freq.slider.SetPosition(450.0 * index);
      width.slider.SetPosition(10 + index);
    }
    vc::Frame frame;
    Numbered freq, width;
  };
  vc::Form form{"RowForm", "Multiple Notch (Filter 1)"};
  vc::Frame fraRows{form, "fraRows", "Notches", vc::Arrangement::Table};
  std::vector<std::unique_ptr<Row>> rows;
  std::unique_ptr<Numbered> atten;
  std::vector<std::unique_ptr<vc::GraphicButton>> buttons;
  std::unique_ptr<vc::Button> btnOK;

  RowForm() {
    constexpr int count = 16;
    fraRows.headings = {"", "Freq.", "Width"};
    for (int i = 0; i < count; ++i) rows.push_back(std::make_unique<Row>(fraRows, i));
    atten = std::make_unique<Numbered>(form, "Attenuation", "Atten", "%", 100, vc::NoIndex);
    for (const char* name : {"Build", "Destroy"}) {
      buttons.push_back(std::make_unique<vc::GraphicButton>(form, std::string("btn") + name, name,
                                                            vc::GraphicButton::Style::Push));
    }
    btnOK = std::make_unique<vc::Button>(form, "btnOK", "OK");
  }
};

inline const std::array<std::string, 20> BandCaptions{"100",  "300",  "500",  "700",  "900",  "1.1K", "1.3K",
                                                      "1.5K", "1.7K", "1.9K", "2.2K", "2.7K", "3.2K", "3.8K",
                                                      "4.4K", "5.0K", "5.6K", "6.2K", "6.8K", "7.4K"};

struct BandForm {
  vc::Form form{"BandForm", "20 Band Graphic (Filter 1)"};
  vc::Frame fraBands{form, "fraBands", "Gain", vc::Arrangement::Bank};
  vc::ControlArray<vc::Slider, 0, 20> sldrGain{fraBands, "sldrGain", BandCaptions};
  vc::ControlArray<vc::TextBox, 0, 20> txtGain{fraBands, "txtGain", BandCaptions};
  vc::CheckBox chkLinkSliders{form, "chkLinkSliders", "Link Frequency Sliders"};
  vc::Button btnOK{form, "btnOK", "OK"};

  BandForm() {
    constexpr double highest = 40;
    fraBands.headings = {"Hz"};
    for (double at = highest; at >= 0; at -= highest / 4) {
      fraBands.scale.push_back({at, vc::ShortestText(at - highest)});
    }
    for (int i = 0; i < 20; ++i) {
      vc::Slider& slider = sldrGain(i);
      vc::TextBox& text = txtGain(i);
      text.shows = &slider;
      text.unit = "dB";
      text.widest = "-40";
      slider.changed = [&slider, &text] { text.SetText(vc::ShortestText(slider.Position() - highest)); };
      slider.SetRange(0, highest);
      slider.SetPosition(highest - (i * 7) % 41);
    }
  }
};

}  // namespace support
