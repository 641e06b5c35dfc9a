// A private sound server without a sound card, and a studio that is connected to it.
#include "card/Jack.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <thread>

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the system's
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::size_t Most = 48000 * 60;

void Ignore(const char* /*text*/) {}

std::string ServerName() { return "veltrana-test-" + std::to_string(getpid()); }

bool Answers() {
  jack_client_t* const client = jack_client_open("look", JackNoStartServer, nullptr);
  if (client != nullptr) jack_client_close(client);
  return client != nullptr;
}

}  // namespace

std::unique_ptr<JackServer> JackServer::Start() {
  jack_set_error_function(Ignore);
  jack_set_info_function(Ignore);
  const std::string name = ServerName();
  setenv("JACK_DEFAULT_SERVER", name.c_str(), 1);
  const pid_t child = fork();
  if (child == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int standard : {0, 1, 2}) dup2(nowhere, standard);
    execlp("jackd", "jackd", "-n", name.c_str(), "-r", "-d", "dummy", "-r", "48000", "-p", "256",
           static_cast<char*>(nullptr));
    _exit(127);
  }
  std::unique_ptr<JackServer> server(new JackServer(child));
  for (int i = 0; i < 100; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    if (waitpid(child, nullptr, WNOHANG) != 0) {
      server->id = -1;
      return nullptr;
    }
    if (Answers()) return server;
  }
  return nullptr;
}

JackServer::~JackServer() { Kill(SIGTERM); }
void JackServer::Signal(int number) const { kill(id, number); }

void JackServer::Kill(int number) {
  if (id < 0) return;
  kill(id, number);
  for (int i = 0; i < 50 && waitpid(id, nullptr, WNOHANG) == 0; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  kill(id, SIGKILL);
  waitpid(id, nullptr, 0);
  id = -1;
  // What a server that is killed leaves behind.
  std::error_code ignored;
  for (const auto& file : std::filesystem::directory_iterator("/dev/shm", ignored))
    if (file.path().filename().string().find(ServerName()) != std::string::npos)
      std::filesystem::remove(file.path(), ignored);
}

Studio::Studio() : client(jack_client_open(Name, JackNoStartServer, nullptr)), heard(Most) {
  if (client == nullptr) std::abort();
  out = jack_port_register(client, "tone", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, 0);
  in = jack_port_register(client, "ear", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
  jack_set_process_callback(client, Process, this);
  jack_activate(client);
}

Studio::~Studio() { jack_client_close(client); }

int Studio::Process(jack_nframes_t frames, void* self) {
  auto& studio = *static_cast<Studio*>(self);
  auto* const played = static_cast<float*>(jack_port_get_buffer(studio.out, frames));
  const auto* const got = static_cast<const float*>(jack_port_get_buffer(studio.in, frames));
  const std::size_t before = studio.count;
  if (before + frames > Most) return 0;
  const bool sounding = studio.sounding;
  if (sounding && studio.sounded == 0) studio.began = before;
  for (std::size_t i = 0; i < frames; ++i) {
    const double phase = 2 * std::numbers::pi * Tone * static_cast<double>(studio.sounded) / 48000;
    played[i] = sounding ? static_cast<float>(Level * std::sin(phase)) : 0.0F;
    if (sounding) ++studio.sounded;
    studio.heard[before + i] = got[i];
  }
  studio.count = before + frames;
  return 0;
}
