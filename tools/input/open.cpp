// Opening a file, and telling its kind from its first bytes.
#include "input/kinds.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

#include "record.h"

namespace tool {
namespace {

constexpr std::size_t head_size = 4096;

[[noreturn]] void throw_errno() { throw data_error(std::strerror(errno)); }

file open_file(const std::string& name) {
  if (name == "-") return file(stdin);
  file f(std::fopen(name.c_str(), "rb"));
  if (f == nullptr) throw_errno();
  return f;
}

// A pipe cannot be looked into and read again, so it goes through a file of its own.
file seekable(file f) {
  if (std::fseek(f.get(), 0, SEEK_SET) == 0) return f;
  file copy(std::tmpfile());
  if (copy == nullptr) throw_errno();
  std::vector<char> block(1 << 16);
  while (const std::size_t n = std::fread(block.data(), 1, block.size(), f.get())) {
    if (std::fwrite(block.data(), 1, n, copy.get()) != n) throw_errno();
  }
  if (std::ferror(f.get()) != 0) throw_errno();
  if (std::fflush(copy.get()) != 0) throw_errno();
  std::rewind(copy.get());
  return copy;
}

std::string head_of(std::FILE* f) {
  std::string head(head_size, '\0');
  head.resize(std::fread(head.data(), 1, head.size(), f));
  if (std::ferror(f) != 0) throw_errno();
  std::rewind(f);
  return head;
}

bool is_text(std::string_view head) {
  return std::all_of(head.begin(), head.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= ' ' || (byte >= '\t' && byte <= '\r');
  });
}

bool is_binary_vector(std::string_view head) {
  return head.size() >= 4 && (head.starts_with('\xBE') || head.starts_with('\xEB')) && !is_text(head);
}

bool is_text_vector(std::string_view head) {
  const auto start = head.find_first_not_of(" \t\r\n\v\f");
  return start != std::string_view::npos && head.substr(start).starts_with("#DSP");
}

}  // namespace

std::unique_ptr<source> open_source(const std::string& name, const input_options& options) {
  const std::string shown = name == "-" ? "standard input" : name;
  return at_place(shown, [&]() -> std::unique_ptr<source> {
    file f = seekable(open_file(name));
    const std::string head = head_of(f.get());
    if (head.empty()) throw data_error("the file is empty");
    if (is_binary_vector(head) || is_text_vector(head)) return open_vector(std::move(f), shown, options);
    if (is_text(head)) return open_table(std::move(f), shown, options);
    return open_sound(std::move(f), shown, options);
  });
}

}  // namespace tool
