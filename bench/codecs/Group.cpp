#include "bench/codecs/Group.h"

#include <stdexcept>
#include <utility>

#include "bench/support/Clocks.h"
#include "bench/support/Region.h"

namespace tavrel::bench {

void Group::Add(std::string name, std::function<void()> work) {
  steps_.push_back({std::move(name), [freshBytes = freshBytes_, work = std::move(work)] {
                      if (freshBytes > 0) WarmMemoryHere(freshBytes);
                      return ProcessorSecondsOf(work);
                    }});
}

void Group::Measure(std::uint32_t rounds, Report& report) {
  WarmUp(steps_);
  RunInTurns(steps_, rounds);
  AddTo(report);
}

Series Group::RatioTo(std::string_view peer) const {
  const Step* step = StepNamed(steps_, peer);
  if (step == nullptr) throw std::logic_error("there is no such step");
  return step->seconds.Over(steps_.front().seconds);
}

void Group::AddTo(Report& report) const {
  report.Section(name_);
  for (const Step& step : steps_) {
    report.Seconds(step.name, step.seconds);
    Series speeds;
    for (const double seconds : step.seconds.values()) {
      speeds.Add(static_cast<double>(bytes_) * 1e-9 / seconds);
    }
    report.Figure("  speed", "GB/s", speeds);
    if (&step != &steps_.front()) report.Figure("  time / ours", "", RatioTo(step.name));
  }
}

}  // namespace tavrel::bench
