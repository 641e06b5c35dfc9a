// Port names, folders and timers.
#include <csignal>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "Pty.h"
#include "TempFolder.h"
#include "VirtualClock.h"
#include "host/DeviceRights.h"
#include "host/EndSignals.h"
#include "host/Folders.h"
#include "host/PosixSerialPorts.h"
#include "host/TimerLoop.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// A machine's terminals as the system tells of them.
struct Machine {
  support::TempFolder folder;
  fs::path root = folder.Path();
  PortMap map{(root / "ports").string(), (root / "class").string(), "/dev"};

  Machine() {
    fs::create_directories(root / "ports");
    fs::create_directories(root / "class");
    for (const char* bus : {"pnp", "usb-serial"}) fs::create_directories(root / "bus" / bus);
  }
  void Add(const std::string& name, const std::string& hardware, const std::string& bus, int type = -1) {
    const fs::path device = root / "devices" / hardware;
    fs::create_directories(device);
    if (!fs::exists(device / "subsystem")) fs::create_symlink(root / "bus" / bus, device / "subsystem");
    const fs::path entry = root / "class" / name;
    fs::create_directories(entry);
    if (!hardware.empty()) fs::create_symlink(device, entry / "device");
    if (type >= 0) std::ofstream(entry / "type") << type << '\n';
  }
};

TEST(PortMap, TakesPresentUartsThenUsbBySocket) {
  Machine machine;
  machine.Add("ttyUSB0", "pci/usb1/1-4", "usb-serial");
  machine.Add("ttyUSB1", "pci/usb1/1-2", "usb-serial");
  machine.Add("ttyS10", "pnp/a", "pnp", 4);
  machine.Add("ttyS2", "pnp/b", "pnp", 4);
  machine.Add("ttyS0", "pnp/c", "pnp", 0);  // a place without a port
  fs::create_directories(machine.root / "class" / "tty1");
  const std::vector<std::string> expected{"/dev/ttyS2", "/dev/ttyS10", "/dev/ttyUSB1", "/dev/ttyUSB0"};
  EXPECT_EQ(machine.map.Devices(), expected);
  EXPECT_EQ(machine.map.PathOf("COM3"), "/dev/ttyUSB1");
  EXPECT_EQ(machine.map.PathOf("COM5"), "");
  for (const char* bad : {"", "COM", "COM0", "COM10", "LPT1", "COMA"})
    EXPECT_EQ(machine.map.PathOf(bad), "") << bad;
}

TEST(PortMap, LinkBesideTheProgramWins) {
  Machine machine;
  machine.Add("ttyS2", "pnp/b", "pnp", 4);
  const support::Pty pty;
  fs::create_symlink(pty.Path(), machine.root / "ports" / "COM1");
  PosixSerialPorts ports(machine.map);
  std::string reason;
  EXPECT_TRUE(ports.Open("COM1", reason)) << reason;
  EXPECT_FALSE(ports.Open("COM2", reason));
  EXPECT_EQ(reason, "COM2: this machine has no such serial port");
  // A link whose unit has gone does not fall back to another device.
  fs::create_symlink(machine.root / "nowhere", machine.root / "ports" / "COM2");
  EXPECT_FALSE(ports.Open("COM2", reason));
  EXPECT_EQ(reason, "COM2: " + (machine.root / "ports" / "COM2").string() + " is not there");
}

// A line of a program's own may come where nothing else is, nor may come back: an adapter that is not plugged
// in keeps its port.
TEST(PortMap, ALineOfAProgramTakesAPortThatHasNoDevice) {
  Machine machine;
  machine.Add("ttyS2", "pnp/b", "pnp", 4);
  const fs::path ports = machine.root / "ports", own = machine.root / "own" / "ports";
  const support::Pty pty;
  fs::create_symlink(pty.Path(), ports / "COM2");
  fs::create_symlink("/dev/pts/999999", ports / "COM3");
  fs::create_symlink("/dev/ttyUSB99", ports / "COM4");
  std::ofstream(ports / "COM5") << "no link\n";
  std::vector<std::string> places;
  for (const char* name : {"COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM10"}) {
    places.push_back(machine.map.PlaceForLine(name));
  }
  const std::string left = (ports / "COM3").string(), none = (ports / "COM6").string();
  EXPECT_EQ(places, (std::vector<std::string>{"", "", left, "", "", none, ""}));
  // Where that folder cannot be written, another one has such links, which count as well.
  machine.map.ownFolder = own.string();
  EXPECT_EQ(machine.map.PlaceForLine("COM3"), "");
  EXPECT_EQ(machine.map.PlaceForLine("COM6"), (own / "COM6").string());
  fs::create_symlink(pty.Path(), own / "COM6");
  EXPECT_EQ(machine.map.PlaceForLine("COM6"), "");
  EXPECT_EQ(machine.map.PathOf("COM6"), (own / "COM6").string());
}

TEST(Folders, UnwritableFolderGivesWayToTheUsersOwn) {
  const support::TempFolder folder;
  const std::string home = folder.Path() + "/a", own = home + "/.local/share/veltrana";
  const Folders alone = ChooseFolders(folder.Path(), home);
  EXPECT_EQ(alone.writable, folder.Path());
  EXPECT_EQ(alone.Documents(), folder.Path());
  EXPECT_FALSE(alone.readOnly);
  const Folders both = ChooseFolders(folder.Path() + "/missing", home);
  EXPECT_EQ(both.writable, own);
  EXPECT_EQ(both.Documents(), own);
  EXPECT_TRUE(both.readOnly);
  EXPECT_TRUE(fs::is_directory(own));
}

TEST(Folders, AnInstalledProgramWritesNothingBesideItself) {
  const support::TempFolder folder;
  const std::string programs = folder.Path() + "/bin", shared = folder.Path() + "/share/veltrana";
  const std::string home = folder.Path() + "/home", own = home + "/.local/share/veltrana";
  fs::create_directories(programs);
  EXPECT_EQ(ChooseFolders(programs, home).Files(), programs);
  EXPECT_EQ(ChooseFolders(programs, home).Ports().linkFolder, programs + "/ports");
  fs::create_directories(shared);
  const Folders installed = ChooseFolders(programs, home);  // although the folder could be written
  EXPECT_EQ(installed.executable, programs);
  EXPECT_EQ(installed.Files(), shared);
  EXPECT_EQ(installed.writable, own);
  EXPECT_EQ(installed.Documents(), home);
  EXPECT_FALSE(installed.readOnly);
  EXPECT_EQ(installed.Ports().linkFolder, own + "/ports");
  EXPECT_TRUE(fs::is_directory(own));
}

TEST(DeviceRights, SayWhoMayUseTheDeviceAndWhatGivesTheRight) {
  const DeviceRights usual{"root", "dialout", 0660};
  const std::string members = "only members of the group \"dialout\" may use it";
  EXPECT_EQ(AdviceOnRights(usual, {"ana"}), members + ": sudo adduser ana dialout, then log in again");
  EXPECT_EQ(AdviceOnRights(usual, {"ana", false, true}),
            members + ", and ana is one from the next login on: log in again");
  for (const DeviceRights& closed :
       {DeviceRights{"root", "dialout", 0640}, DeviceRights{"root", "root", 0660, true}}) {
    EXPECT_EQ(AdviceOnRights(closed, {"ana"}), "only the user \"root\" may use it");
  }
  const std::string otherwise = "the system forbids it, although the rights of the device would allow it";
  EXPECT_EQ(AdviceOnRights(usual, {"ana", true, true}), otherwise);
  EXPECT_EQ(AdviceOnRights({"root", "tty", 0666}, {"ana"}), otherwise);
}

// As whoever runs the tests, of a device of his own: what the databases say is read, names and all.
TEST(DeviceRights, AreThoseOfTheVeryDevice) {
  const support::TempFolder folder;
  const std::string line = folder.Path() + "/line";
  EXPECT_EQ(WhyNoPermission(line),
            "No permission to use " + line + ": the folder that it lies in may not be entered");
  std::ofstream(line).put('x');
  fs::permissions(line, fs::perms::owner_read);
  EXPECT_EQ(WhyNoPermission(line), "No permission to use " + line + ": only the user \"" +
                                       getpwuid(getuid())->pw_name + "\" may use it");
  if (getuid() != 0) return;  // who alone can give it to another group
  const group* serial = getgrnam("dialout");
  ASSERT_NE(serial, nullptr);
  ASSERT_EQ(chown(line.c_str(), 0, serial->gr_gid), 0);
  fs::permissions(line, fs::perms::group_read | fs::perms::group_write);
  EXPECT_THAT(WhyNoPermission(line), testing::HasSubstr("sudo adduser root dialout, then log in again"));
}

TEST(TimerLoop, TicksAtItsPaceAndMissesInsteadOfBursting) {
  support::VirtualClock clock;
  TimerLoop loop(clock);
  int fast = 0;
  int slow = 0;
  const auto first = loop.CreateTimer(50, [&] { ++fast; });
  const auto second = loop.CreateTimer(100, [&] { ++slow; });
  first->SetEnabled(true);
  second->SetEnabled(true);
  loop.RunFor(1000);
  EXPECT_EQ(fast, 20);
  EXPECT_EQ(slow, 10);
  clock.Sleep(5000000);
  loop.RunFor(10);
  EXPECT_EQ(fast, 21);
  second->SetEnabled(false);
  loop.RunFor(1000);
  EXPECT_EQ(slow, 11);
}

TEST(TimerLoop, TimersMayStopThemselvesAndDie) {
  support::VirtualClock clock;
  TimerLoop loop(clock);
  int ticks = 0;
  std::unique_ptr<vc::Timer> dying;
  dying = loop.CreateTimer(10, [&] {
    ++ticks;
    dying.reset();
  });
  dying->SetEnabled(true);
  std::unique_ptr<vc::Timer> ending;
  ending = loop.CreateTimer(30, [&] { loop.RequestEnd(); });
  ending->SetEnabled(true);
  loop.RunFor(1000);
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(clock.Microseconds(), 1000000 + 30000);
}

TEST(TimerLoop, AnEndThatIsRefusedIsToldAndForgotten) {
  support::VirtualClock clock;
  TimerLoop loop(clock);
  EndSignals signals;
  loop.SetEndAsked([&signals] { return signals.Come(); }, [&signals] { signals.Forget(); });
  int told = 0;
  loop.endRefused = [&told] { ++told; };
  kill(getpid(), SIGTERM);
  loop.RunFor(100);
  loop.RequestEnd();
  EXPECT_EQ(told, 2);
  EXPECT_FALSE(loop.Ending());
  loop.endRefused = nullptr;
  EXPECT_FALSE(loop.Ending());
  kill(getpid(), SIGTERM);
  EXPECT_TRUE(loop.Ending());
}

}  // namespace
}  // namespace host
