#pragma once

#include <cstdint>
#include <string>

#include "com/argument_catalogue.h"
#include "monkey/type_library.h"

/// Where the monkey is and what it found: prints every finding with what repeats it, and watches
/// over crashes and hangs.
namespace monkey::journal {

struct Call {
  const Class* called_class;
  const Member* member;
  const char* binding;
  const ArgumentCatalogue* arguments;
};

struct Findings {
  unsigned long wrong_outcomes = 0;
  unsigned long hangs = 0;
  unsigned long leaks = 0;

  unsigned long All() const { return wrong_outcomes + hangs + leaks; }
};

/// From now on, and for good: crashes are reported and end the process, calls that take longer than
/// a second of the processor's time are counted. `only` is what the command line allowed.
void Begin(const std::string& only);

void BeginRound(std::uint64_t seed);

/// A call from its beginning to its end; calls may be inside of others.
class Running {
 public:
  explicit Running(const Call& call);
  ~Running();
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
};

/// Tells that the component goes on: an event was raised.
void Progress();

/// Calls of this round that were begun.
std::uint64_t CallsOfRound();

void ReportWrongOutcome(const std::string& what);
void ReportLeak(const std::string& what);

const Findings& Found();

}  // namespace monkey::journal
