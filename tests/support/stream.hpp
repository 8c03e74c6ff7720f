// A stream over a string that fails when a test wants it.
#pragma once

#include <algorithm>
#include <climits>
#include <cstdio>
#include <string>
#include <utility>

// Reads and writes `text` from its start on. Without a buffer every character read and every write is a call of
// its own. Lets the k-th of the calls that read, write or move fail, k from 1, and none of the rest.
class fault_stream {
 public:
  explicit fault_stream(std::string text = {}, int failing_call = INT_MAX, int buffering = _IONBF)
      : text_(std::move(text)), failing_call_(failing_call) {
    stream_ = fopencookie(this, "r+", {read, write, seek, nullptr});
    (void)std::setvbuf(stream_, nullptr, buffering, 4096);
  }
  fault_stream(fault_stream&&) = delete;
  ~fault_stream() { (void)std::fclose(stream_); }

  FILE* get() { return stream_; }
  int calls() const { return calls_; }
  const std::string& text() const { return text_; }  // what was given, overwritten by what was written
  std::string rest() {                               // what has not been read; reads it
    std::string unread;
    for (int c = std::fgetc(stream_); c != EOF; c = std::fgetc(stream_)) unread += static_cast<char>(c);
    return unread;
  }

 private:
  bool fails() { return ++calls_ == failing_call_; }
  ssize_t move_on(std::size_t count) {
    position_ += count;
    return static_cast<ssize_t>(count);
  }
  static ssize_t read(void* self, char* to, std::size_t size) {
    auto& s = *static_cast<fault_stream*>(self);
    return s.fails() ? -1 : s.move_on(s.text_.copy(to, size, std::min(s.position_, s.text_.size())));
  }
  static ssize_t write(void* self, const char* from, std::size_t size) {
    auto& s = *static_cast<fault_stream*>(self);
    if (s.fails()) return 0;  // so says the manual; a negative number would be taken for a count
    s.text_.resize(std::max(s.text_.size(), s.position_));
    s.text_.replace(s.position_, size, from, size);
    return s.move_on(size);
  }
  static int seek(void* self, off64_t* offset, int whence) {
    auto& s = *static_cast<fault_stream*>(self);
    if (whence != SEEK_SET) *offset += static_cast<off64_t>(whence == SEEK_CUR ? s.position_ : s.text_.size());
    if (s.fails() || *offset < 0) return -1;
    s.position_ = static_cast<std::size_t>(*offset);
    return 0;
  }

  std::string text_;
  int failing_call_;
  int calls_ = 0;
  std::size_t position_ = 0;
  FILE* stream_ = nullptr;
};
