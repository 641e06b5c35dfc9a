// A print server of our own, as an ordinary user or as root, with queues that keep what they are given.
#pragma once

#include <memory>
#include <string>

#include "Program.h"
#include "TempFolder.h"

namespace support {

class PrintServer {
 public:
  // Raises a Fault in words where there is no server to be had. Whoever prints from now on prints there.
  PrintServer();

  void AddQueue(const std::string& name) const;
  void RemoveQueue(const std::string& name) const;
  // The queue takes nothing from now on.
  void Refuse(const std::string& name) const;
  // The next document that has arrived, with the number of copies that are wanted; empty where none comes.
  struct Arrival {
    std::string file, title;
    int copies = 0;
  };
  Arrival AwaitNext();

 private:
  std::string Path(const std::string& name) const { return folder.Path() + "/" + name; }
  void Write(const std::string& name, const std::string& text, bool program = false) const;

  TempFolder folder;
  std::unique_ptr<Program> server;
  int arrived = 0;
};

// What a program says on its standard output; a Fault where it ends with an error.
std::string OutputOf(const std::string& command);

// The text of a PDF file as it lies on its pages, each of which ends with a form feed.
std::string PdfText(const std::string& file);
int PdfPages(const std::string& file);

}  // namespace support
