#include "expr/transform.h"

#include "expr/float_environment.h"
#include "expr/operations.h"
#include "expr/tokens.h"
#include "frame/errors.h"

namespace zepkit10 {
namespace {

template <class Entry>
Entry Require(const std::optional<Entry>& entry) {
  if (!entry) RaiseZepError(ZepErrors::zepErrBadParam, u"Expression");
  return *entry;
}

Token FirstToken(std::u16string_view text, const NumberFormat& numbers) {
  const DefaultFloatEnvironment environment;
  Token token;
  Tokenizer(text, numbers).Read(0, static_cast<Tokenizer::Position>(text.size()), token);
  return token;
}

}  // namespace

std::int32_t OperationToPriority(std::int32_t operation) {
  return static_cast<std::int32_t>(Require(PriorityOf(static_cast<ZepMathOperation>(operation))));
}

std::u16string OperationToText(std::int32_t operation) {
  return std::u16string(Require(TextOf(static_cast<ZepMathOperation>(operation))));
}

std::int32_t TextToOperation(std::u16string_view text, const NumberFormat& numbers) {
  return static_cast<std::int32_t>(FirstToken(text, numbers).operation);
}

std::int32_t TextToPriority(std::u16string_view text, const NumberFormat& numbers) {
  return OperationToPriority(TextToOperation(text, numbers));
}

std::u16string TextToToken(std::u16string_view text, const NumberFormat& numbers) {
  return std::u16string(text.substr(0, FirstToken(text, numbers).length));
}

}  // namespace zepkit10
