#include "firmware/FrmFirmwareUpload.h"

#include <utility>

namespace vc {
namespace {

constexpr int ActivationMilliseconds = 200, BlinkMilliseconds = 500;

constexpr const char* WhyOpen =
    "The firmware is being written: neither this window nor the program can be closed before that has ended.";

}  // namespace

FrmFirmwareUpload::FrmFirmwareUpload(Platform& host, modDebug& objectLog, const SystemSettings& record,
                                     Forms& openForms, const LineTap& tap)
    : tmrActivation(host.events.CreateTimer(ActivationMilliseconds, [this] { Activate(); })),
      tmrBlink(host.events.CreateTimer(BlinkMilliseconds,
                                       [this] { lblBlink.core.SetVisible(!lblBlink.core.Visible()); })),
      platform(host),
      settings(record),
      forms(openForms),
      firmware(host, objectLog, View(), tap) {
  fraStage.look = FrameLook::Card;
  fraUnit.look = fraPackets.look = FrameLook::Flat;
  pbMain.SetOrientation(0);
  pbMain.SetFromColor(Highlight);
  pbMain.SetToColor(Highlight);
  lblBlink.keepsRoom = lblDataPacket.keepsRoom = lblPacketNumber.keepsRoom = true;
  btnCancel.clicked = [this] { StopByOperator(); };
  form.cancelButton = &btnCancel;
  // No box: it would hold up the transfer until it is answered.
  form.closeRefused = [this] {
    ShowNotice(form.refusal);
    platform.desk.Beep();
  };
}

UploadView FrmFirmwareUpload::View() {
  return {.section = [this](const std::string& text) { lblSection.core.SetCaption(text); },
          .doing = [this](const std::string& text) { lblDoing.core.SetCaption(text); },
          .blink = [this](bool on) { Blink(on); },
          .SetXmodemResults = [this](int total, int done) { return SetXmodemResults(total, done); },
          .ShowPacketInfo = [this] { ShowPacketInfo(); },
          .HidePacketInfo = [this] { HidePacketInfo(); },
          .writing = [this](bool on) { RefuseToClose(on); },
          .failed =
              [this](const std::string& words) {
                failure = words;
                ShowNotice(words);
              }};
}

void FrmFirmwareUpload::Take(const std::string& version,
                             std::function<void(const std::string& failure)> afterwards) {
  lblVersion.core.SetCaption("Firmware in the unit: " + version);
  then = std::move(afterwards);
}

void FrmFirmwareUpload::Fill() {
  lblPort.core.SetCaption("Port: COM " + std::to_string(settings.comPort));
  lblSection.core.SetCaption("");
  lblDoing.core.SetCaption("");
  ShowNotice("");
  SetXmodemResults(0, 0);
  HidePacketInfo();
  Blink(false);
  failure.clear();
  tmrActivation->SetEnabled(true);
}

void FrmFirmwareUpload::Activate() {
  tmrActivation->SetEnabled(false);
  running = true;
  platform.desk.SetHourglass(true);
  firmware.StartFirmwareUpdate(settings.comPort);
  platform.desk.SetHourglass(false);
  running = false;
  Leave();
  if (const auto fault = std::exchange(firmware.raisedMeanwhile, std::nullopt)) throw Fault{*fault};
}

// The end of the program leaves nothing to follow.
void FrmFirmwareUpload::Leave() {
  forms.Unload(form);
  const auto next = std::exchange(then, nullptr);
  if (next && !platform.events.Ending()) next(failure);
}

void FrmFirmwareUpload::Blink(bool on) {
  tmrBlink->SetEnabled(on);
  lblBlink.core.SetVisible(on);
}

void FrmFirmwareUpload::ShowNotice(const std::string& text) {
  lblNotice.core.SetCaption(text);
  lblNotice.core.SetVisible(!text.empty());
}

bool FrmFirmwareUpload::SetXmodemResults(int total, int done) {
  if (pbMain.Steps() != total) pbMain.SetSteps(total);
  pbMain.SetValue(done);
  lblPacketNumber.core.SetCaption(std::to_string(done));
  Blink(total > 0 && done == total);
  return true;
}

void FrmFirmwareUpload::ShowPacketInfo() {
  lblDataPacket.core.SetVisible(true);
  lblPacketNumber.core.SetVisible(true);
}

void FrmFirmwareUpload::HidePacketInfo() {
  lblDataPacket.core.SetVisible(false);
  lblPacketNumber.core.SetVisible(false);
}

void FrmFirmwareUpload::RefuseToClose(bool on) {
  form.refusal = on ? WhyOpen : "";
  platform.events.endRefused = on ? form.closeRefused : nullptr;
  btnCancel.core.SetEnabled(!on);
  ShowNotice("");  // the reason why it stayed open may be none any more
}

// Before anything is erased the operator may think better of it.
void FrmFirmwareUpload::StopByOperator() {
  if (running) {
    firmware.firmwareAbort = firmware.stopped = true;
  } else {
    tmrActivation->SetEnabled(false);
    failure = "The update has been stopped.  The unit has not been changed.";
    Leave();
  }
}

}  // namespace vc
