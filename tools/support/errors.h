#pragma once

#include <stdexcept>

/// A command line that says nothing sensible; ends the program with status 2.
class UsageError : public std::runtime_error
{
  using runtime_error::runtime_error;
};

/// A file that cannot be read, written, or made a picture of; the text begins with its name. Status 1.
class FileError : public std::runtime_error
{
  using runtime_error::runtime_error;
};
