// A private sound server without a sound card, and a studio that is connected to it.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <jack/jack.h>
#include <sys/types.h>

// A jackd of this process, by whose name all that is begun here finds it. It goes with this.
class JackServer {
 public:
  // Nothing where jackd is not installed or does not come up in ten seconds.
  static std::unique_ptr<JackServer> Start();
  ~JackServer();
  void Signal(int number) const;
  // Until it is gone.
  void Kill(int number);

 private:
  explicit JackServer(pid_t begun) : id(begun) {}
  pid_t id;
};

// A client of the server with one output and one input, which other programs see as a sound card. It plays a
// tone that begins when it is told to, and keeps what it hears.
class Studio {
 public:
  static constexpr const char* Name = "studio";
  static constexpr double Tone = 440, Level = 0.5;  // Hz; of full scale

  Studio();
  ~Studio();

  std::atomic<bool> sounding{false};
  // What came in up to now, and the place in it at which the tone began.
  std::vector<float> Heard() const {
    return {heard.begin(), heard.begin() + static_cast<long>(count.load())};
  }
  std::size_t Began() const { return began; }

 private:
  static int Process(jack_nframes_t frames, void* self);

  jack_client_t* client;
  jack_port_t *out, *in;
  std::vector<float> heard;
  std::atomic<std::size_t> count{0}, began{0};
  std::size_t sounded = 0;
};
