#include "tools/support/progress.h"

#include <algorithm>
#include <cstddef>
#include <iostream>

#if __has_include(<unistd.h>)
#include <unistd.h>
#endif

std::string progressText(long done, long all)
{
  constexpr long width = 30;
  long const most = std::max(all, 1L), at = std::clamp(done, 0L, most);
  auto const part = [&](long whole) { return static_cast<std::size_t>(at * whole / most); };
  std::string text = "[" + std::string(part(width), '#') + std::string(width - part(width), '.') + "] ";
  std::string const percent = std::to_string(part(100));
  return text + std::string(3 - percent.size(), ' ') + percent + " %, " + std::to_string(at) + " of " +
         std::to_string(all);
}

bool Progress::isSeen()
{
#if __has_include(<unistd.h>)
  return isatty(STDERR_FILENO) == 1;
#else
  return false;
#endif
}

Progress::Progress(long all) : all_(all), isOn_(isSeen() && all >= 20) {}

void Progress::step()
{
  ++done_;
  if (!isOn_)
    return;
  auto const now = Clock::now();
  if (last_ != Clock::time_point() && now - last_ < std::chrono::milliseconds(100))
    return;
  last_ = now;
  std::string const text = progressText(done_, all_);
  std::cerr << '\r' << text << std::flush;
  shown_ = text.size();  // it never gets shorter
}

void Progress::hide()
{
  if (shown_ > 0)
    std::cerr << '\r' << std::string(shown_, ' ') << '\r' << std::flush;
  shown_ = 0;
}
