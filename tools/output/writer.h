// SPDX-License-Identifier: MIT
// Where a command's result goes: a file that appears when it is whole, or standard output.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

// A named file is written beside its name and takes its place in commit(), so that nothing half-written can
// be met there, whatever stops the program; a device or a pipe of that name is written as it comes. "-" and
// an empty name are standard output, where a reader that has gone away ends the program without a word. Every
// error is a resource_error that names the file, or a data_error where the name cannot be written to.
class writer {
 public:
  explicit writer(const std::string& name);
  ~writer();
  writer(const writer&) = delete;
  writer& operator=(const writer&) = delete;

  void write(std::string_view bytes);
  void commit();

  // For what writes by descriptor and goes back in the file: standard output and pipes get it all in
  // commit().
  int seekable_descriptor();
  bool is_terminal() const;

  // What writing by that descriptor runs into.
  [[noreturn]] void fail(int error) const;
  const std::string& name() const { return shown_; }

 private:
  void open_beside();
  void open_in_place();
  void flush();
  void put(const char* bytes, std::size_t count) const;
  void copy_to_target();
  void link_under_name();
  std::string target_;     // empty for standard output
  std::string shown_;      // for people
  std::string temporary_;  // its name until commit(), where it needs one
  int descriptor_ = -1;
  int spool_ = -1;  // stands in for a descriptor that cannot go back
  bool whole_at_once_ = false;
  std::vector<char> waiting_;
};

}  // namespace tool
