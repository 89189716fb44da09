// The encodings are those of "Intel 64 and IA-32 Architectures Software Developer's Manual",
// volume 2. Value n of the row is in the register xmm<n>; two more registers are for what an
// operation needs in between. Functions that are called may change all of them.
#include "expr/machine_code.h"

#include <array>
#include <bit>
#include <cstddef>
#include <initializer_list>
#include <iterator>

#include "expr/plan.h"
#include "expr/plan_functions.h"

namespace zepkit10 {
namespace {

using enum Joint;
using enum ZepMathOperation;
using Kind = Instruction::Kind;

#ifdef __x86_64__
constexpr bool kIsX64 = true;
#else
constexpr bool kIsX64 = false;
#endif

using Register = std::uint8_t;
constexpr Register kMostValues = 4, kOther = 4, kSpare = 5;
constexpr std::size_t kMostBytes = 3400;  // with what stands around them, a page
// Behind what called functions may use on Windows.
constexpr std::uint8_t kSlots = 0x20;

// Operations on a double: the third byte of F2 0F xx.
enum Scalar : std::uint8_t {
  kMove = 0x10,
  kStore = 0x11,
  kRoot = 0x51,
  kSum = 0x58,
  kProduct = 0x59,
  kDifference = 0x5C,
  kQuotient = 0x5E
};
// Operations on a whole register: the third byte of 66 0F xx.
enum Packed : std::uint8_t { kCopy = 0x28, kAnd = 0x54, kOr = 0x56 };

/// What stands in front of the entry. In single precision 1 is added to 3/4 and to 1/4 of the
/// distance to the next number, and 0 to the smallest number: the results tell of any other
/// rounding than to nearest, and of small numbers that count as 0.
struct Preamble {
  float first[4] = {1, 1, 0x1p-149f, 0};
  float second[4] = {0x1.8p-24f, 0x1p-25f, 0, 0};
  float sums[4] = {0x1.000002p0f, 1, 0x1p-149f, 0};
  std::uint8_t no_value[16] = {0x66, 0x0F, 0x76, 0xC0, 0xC3};  // pcmpeqd xmm0, xmm0; ret
};
static_assert(sizeof(Preamble) == MachineCode::kEntry);
static_assert(offsetof(Preamble, no_value) == MachineCode::kNoValue);
constexpr auto kPreamble = std::bit_cast<std::array<std::uint8_t, sizeof(Preamble)>>(Preamble());

/// Makes the sums and leaves by the way out where they differ.
constexpr std::uint8_t kCheck[] = {0x0F, 0x28, 0x2D, 0xB9, 0xFF, 0xFF, 0xFF,  // movaps xmm5, first
                                   0x0F, 0x58, 0x2D, 0xC2, 0xFF, 0xFF, 0xFF,  // addps xmm5, second
                                   0x66, 0x0F, 0x76, 0x2D, 0xCA, 0xFF, 0xFF,
                                   0xFF,              // pcmpeqd xmm5, sums
                                   0x0F, 0x50, 0xC5,  // movmskps eax, xmm5
                                   0x83, 0xF8, 0x0F,  // cmp eax, 15
                                   0x75, 0xD2};       // jne no_value

constexpr std::uint8_t kEnter[] = {0x48, 0x83, 0xEC, MachineCode::kFrameBytes};  // sub rsp, …
constexpr std::uint8_t kLeave[] = {0x48, 0x83, 0xC4, MachineCode::kFrameBytes};  // add rsp, …
constexpr std::uint8_t kReturn[] = {0xC3};

class Assembler {
 public:
  MachineCode Assemble(std::span<const Instruction> instructions);

 private:
  bool Append(const Instruction& instruction);
  void Apply(ZepMathOperation function);
  void Join(Joint joint, const double* number);
  void Join(Joint joint, Register value, Register operand);
  void Divide(Register dividend, Register divisor);
  void Call(const void* function, std::initializer_list<Register> arguments, Register result);

  Register Last() const { return static_cast<Register>(values_ - 1); }

  void Bytes(std::initializer_list<std::uint8_t> bytes) { code_.insert(code_.end(), bytes); }
  template <class Number>
  void Put(Number number) {
    const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof number>>(number);
    code_.insert(code_.end(), bytes.begin(), bytes.end());
  }
  void MoveToRax(std::uint64_t number) {
    Bytes({0x48, 0xB8});
    Put(number);
    rax_ = number;
  }
  static std::uint8_t Pair(Register to, Register from) {
    return static_cast<std::uint8_t>(0xC0 | to << 3 | from);
  }
  void Do(Scalar operation, Register to, Register from) {
    Bytes({0xF2, 0x0F, operation, Pair(to, from)});
  }
  void Do(Packed operation, Register to, Register from) {
    Bytes({0x66, 0x0F, operation, Pair(to, from)});
  }
  void Do(Scalar operation, Register to, const double* number) {
    const auto address = reinterpret_cast<std::uintptr_t>(number);
    // Most numbers are near each other.
    if (!IsNearRax(address)) MoveToRax(address);
    Bytes({0xF2, 0x0F, operation, static_cast<std::uint8_t>(0x80 | to << 3)});  // [rax + …]
    Put(static_cast<std::int32_t>(address - rax_));
  }
  bool IsNearRax(std::uint64_t address) const {
    return rax_ != 0 && address - rax_ + 0x8000'0000 <= 0xFFFF'FFFF;
  }
  void DoWithSlot(Scalar operation, Register value) {
    const auto place = static_cast<std::uint8_t>(kSlots + sizeof(double) * value);
    Bytes({0xF2, 0x0F, operation, static_cast<std::uint8_t>(0x44 | value << 3), 0x24, place});
  }

  std::vector<std::uint8_t> code_;  // of the instructions
  bool calls_ = false;
  Register values_ = 0;
  std::uint64_t rax_ = 0;  // what the register holds, 0 where that is not known
};

MachineCode Assembler::Assemble(std::span<const Instruction> instructions) {
  for (const Instruction& each : instructions) {
    if (!Append(each) || code_.size() > kMostBytes) return {};
  }
  MachineCode made{{std::begin(kPreamble), std::end(kPreamble)}, calls_};
  const auto append = [&made](const auto& bytes) {
    made.bytes.insert(made.bytes.end(), std::begin(bytes), std::end(bytes));
  };
  calls_ ? append(kEnter) : append(kCheck);
  append(code_);
  if (calls_) append(kLeave);
  append(kReturn);
  return made;
}

/// False where there is no code for it.
bool Assembler::Append(const Instruction& instruction) {
  switch (instruction.kind) {
    case Kind::kLoad:
      if (values_ == kMostValues) return false;
      Do(kMove, values_++, instruction.number);
      break;
    case Kind::kRunNested: {
      const ExecutableCode* nested = instruction.nested->MakeCode();
      if (values_ == kMostValues || !nested) return false;
      Call(nested->Address(), {}, values_++);
      break;
    }
    case Kind::kSquare:
      Do(kProduct, Last(), Last());
      break;
    case Kind::kApply:
      Apply(instruction.function);
      break;
    case Kind::kJoin:
      Join(instruction.joint, instruction.number);
      break;
    case Kind::kJoinValues:
      --values_;
      Join(instruction.joint, Last(), values_);
      break;
  }
  return true;
}

void Assembler::Apply(ZepMathOperation function) {
  if (function == zepMOSqr) return Do(kRoot, Last(), Last());
  if (function == zepMOAmount) {
    MoveToRax(~std::bit_cast<std::uint64_t>(-0.0));
    Bytes({0x66, 0x48, 0x0F, 0x6E, Pair(kOther, 0)});  // movq kOther, rax
    return Do(kAnd, Last(), kOther);
  }
  Call(reinterpret_cast<const void*>(PlannedFunctionOf(function)), {Last()}, Last());
}

void Assembler::Join(Joint joint, const double* number) {
  switch (joint) {
    case kAdd:
      return Do(kSum, Last(), number);
    case kSub:
      return Do(kDifference, Last(), number);
    case kMul:
      return Do(kProduct, Last(), number);
    case kDiv:
      return Do(kQuotient, Last(), number);
    default:
      Do(kMove, kOther, number);
      Join(joint, Last(), kOther);
  }
}

/// The value is joined with the operand, which is lost.
void Assembler::Join(Joint joint, Register value, Register operand) {
  switch (joint) {
    case kAdd:
      return Do(kSum, value, operand);
    case kSub:
      return Do(kDifference, value, operand);
    case kSubFrom:
      Do(kDifference, operand, value);
      return Do(kCopy, value, operand);
    case kMul:
      return Do(kProduct, value, operand);
    case kDiv:
      return Divide(value, operand);
    case kDivInto:
      Divide(operand, value);
      return Do(kCopy, value, operand);
    case kRaise:
      return Call(reinterpret_cast<const void*>(PlannedPower), {value, operand}, value);
    case kRaiseInto:
      return Call(reinterpret_cast<const void*>(PlannedPower), {operand, value}, value);
  }
}

/// A divisor that is not finite must make NaN: less itself it is NaN, any other one is 0, which
/// changes nothing in a quotient that its bits are added to.
void Assembler::Divide(Register dividend, Register divisor) {
  Do(kCopy, kSpare, divisor);
  Do(kDifference, kSpare, divisor);
  Do(kQuotient, dividend, divisor);
  Do(kOr, dividend, kSpare);
}

/// The values in front of the result outlive the call, those behind it do not.
void Assembler::Call(const void* function, std::initializer_list<Register> arguments,
                     Register result) {
  for (Register value = 0; value < result; ++value) DoWithSlot(kStore, value);
  if (arguments.size() == 2) Do(kCopy, kSpare, arguments.begin()[1]);
  if (arguments.size() >= 1) Do(kCopy, 0, arguments.begin()[0]);
  if (arguments.size() == 2) Do(kCopy, 1, kSpare);
  MoveToRax(reinterpret_cast<std::uintptr_t>(function));
  Bytes({0xFF, 0xD0});  // call rax
  calls_ = true;
  rax_ = 0;
  Do(kCopy, result, 0);
  for (Register value = 0; value < result; ++value) DoWithSlot(kMove, value);
}

}  // namespace

MachineCode MachineCodeOf(std::span<const Instruction> instructions) {
  return kIsX64 ? Assembler().Assemble(instructions) : MachineCode();
}

}  // namespace zepkit10
