#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "platform/message.h"

namespace qvrcom::cli {

// Makes sure that the three standard descriptors are taken: the first file that the program opens must not
// become what it writes its answer to, or reads an access code from. One that was closed can neither be read
// nor written afterwards.
void take_standard_descriptors();

// The two streams of the program. Data goes to `out`; messages go to `err`, and when that is a terminal, one
// status line at its end that is rewritten in place. Foreign texts never reach either of them raw.
class Console {
 public:
  Console(std::ostream& out, std::ostream& err, bool err_is_terminal)
      : out_(out), err_(err), terminal_(err_is_terminal) {}
  ~Console() { erase_status(); }
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // Where data of a command's own making goes; texts must be printable() or JSON.
  std::ostream& out() { return out_; }

  // One line of data.
  void print(std::string_view text);

  // The path of a file that a command has made; told as a message, too, when it could not be written.
  void print_path(const std::string& path);

  // "TITLE: text", each line of the text on a line of its own, the detail indented below.
  void report(const platform::Message& message);

  // A message of the program itself, under the suite's title.
  void tell(const std::string& text, const std::string& detail = {});

  // A question that waits for what is typed behind it.
  void prompt(std::string_view text);

  // Bytes as they are, at once: what a device writes to the user's terminal.
  void pass(std::string_view bytes);

  // No status line from here on, or again.
  void show_status(bool shown);
  bool has_status() const { return terminal_ && status_shown_; }

  void set_status(const std::string& text);
  void erase_status();

  // False when data could not be written: a full disk, a reader that went away.
  bool flush();

  // The same at the end of all data, and tells it.
  bool deliver();

 private:
  std::ostream& out_;
  std::ostream& err_;
  bool terminal_;
  bool status_shown_ = true;
  std::string status_;  // as it stands on the terminal
};

}  // namespace qvrcom::cli
