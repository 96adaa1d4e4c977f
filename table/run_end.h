#pragma once

#include <exception>
#include <string>

/// The end of a run before its last step: an input that is refused, the usage text, a check alone.
///
/// Thrown by everything in the core that ends a run. The program prints the message, if there is
/// one, on standard error and ends with the status; a caller with a process of its own reads both.
class RunEnd : public std::exception {
 public:
  /// \param status   of the process; the shell sees its low eight bits
  /// \param message  the line for standard error, with its newline; empty when all is said
  explicit RunEnd(int status, std::string message = {})
      : status_(status), message_(std::move(message)) {}

  int status() const { return status_; }
  const std::string& message() const { return message_; }
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  int status_;
  std::string message_;
};
