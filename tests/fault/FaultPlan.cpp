#include "tests/fault/FaultPlan.h"

#include <array>
#include <cerrno>

#include "tests/fault/InsideLibrary.h"

namespace tavrel::test {
namespace {

constinit FaultPlan current{CallKind::Memory, 0};
constinit bool isPlanned = false;
constinit std::array<std::int64_t, kCallKinds> made{};
constinit std::int64_t met = 0;

std::int64_t& MadeOf(CallKind kind) noexcept {
  return made[static_cast<std::size_t>(kind)];
}

}  // namespace

void BeginFaults(const FaultPlan& plan) noexcept {
  current = plan;
  isPlanned = true;
  made = {};
  met = 0;
}

void EndFaults() noexcept {
  isPlanned = false;
}

std::int64_t CallsMade(CallKind kind) noexcept {
  return MadeOf(kind);
}

std::int64_t FaultsMet() noexcept {
  return met;
}

const FaultPlan* FaultOfNextCall(CallKind kind) noexcept {
  if (!isPlanned || !IsInsideLibrary()) return nullptr;
  const std::int64_t number = MadeOf(kind)++;
  const bool isMeant =
      kind == current.kind && (current.once ? number == current.n : number >= current.n);
  if (!isMeant) return nullptr;
  ++met;
  return &current;
}

bool NextCallFails(CallKind kind) noexcept {
  const FaultPlan* fault = FaultOfNextCall(kind);
  if (fault == nullptr) return false;
  errno = fault->error;
  return true;
}

}  // namespace tavrel::test
