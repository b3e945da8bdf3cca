#include <stdio.h>
#include <stdlib.h>

#include <memory>
#include <stdexcept>

#include "bench/load/Loaders.h"

namespace tavrel::bench {
namespace {

// Prints what LoadFigures holds, in its order. Reference counting gives everything back at once;
// the cycle collector, which would only look for what is not there, stays on as in any program.
constexpr char kScript[] = R"(
import os, plistlib, re, resource, time

def Peak():
    with open('/proc/self/status') as status:
        return int(re.search(r'VmHWM:\s*(\d+)', status.read()).group(1)) * 1024

peak = Peak()
before = resource.getrusage(resource.RUSAGE_SELF)
start = time.perf_counter()
with open(os.environ['TAVREL_BENCH_FILE'], 'rb') as file:
    root = plistlib.load(file, fmt=plistlib.FMT_XML)
seconds = time.perf_counter() - start
after = resource.getrusage(resource.RUSAGE_SELF)
peak = Peak() - peak
count = len(root['Tracks'])
start = time.perf_counter()
del root
release = time.perf_counter() - start
print(seconds, after.ru_utime - before.ru_utime, after.ru_stime - before.ru_stime, release,
      after.ru_minflt - before.ru_minflt, peak, count)
)";

constexpr char kVersionScript[] = "import platform, plistlib; print(platform.python_version())";

// Standard output of "python3 -c SCRIPT"; empty when there is no Python or the script fails.
std::string RunPython(const std::string& script) {
  const std::string command = "python3 -c \"$TAVREL_BENCH_SCRIPT\" 2>/dev/null";
  setenv("TAVREL_BENCH_SCRIPT", script.c_str(), 1);
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {};
  std::string text;
  for (int byte = getc(pipe); byte != EOF; byte = getc(pipe)) text += static_cast<char>(byte);
  return pclose(pipe) == 0 ? text : std::string();
}

std::string PlistlibVersion() {
  const std::string text = RunPython(kVersionScript);
  return text.substr(0, text.find('\n'));
}

LoadFigures LoadWithPlistlib(const std::string& path) {
  setenv("TAVREL_BENCH_FILE", path.c_str(), 1);
  const std::string answer = RunPython(kScript);
  LoadFigures figures{};
  long long trackCount = 0;
  const int fields = sscanf(answer.c_str(), "%lf %lf %lf %lf %lf %lf %lld", &figures.seconds,
                            &figures.userSeconds, &figures.systemSeconds, &figures.releaseSeconds,
                            &figures.pageFaults, &figures.peakBytes, &trackCount);
  if (fields != 7) throw std::runtime_error("Python's plistlib cannot read the file");
  figures.trackCount = trackCount;
  return figures;
}

}  // namespace

bool HasPlistlib() {
  return !PlistlibVersion().empty();
}

Loader PlistlibLoader() {
  return {kPlistlib, "of Python " + PlistlibVersion(), true, LoadWithPlistlib};
}

}  // namespace tavrel::bench
