#include "platform/automation/translate.h"

#include <oaidl.h>
#include <wrl/client.h>

#include <new>
#include <stdexcept>

#include "frame/errors.h"
#include "platform/automation/abi.h"
#include "platform/automation/class_description.h"
#include "platform/automation/string.h"
#include "platform/error_text.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;
using enum ZepVbErrors3To98;
using enum ZepVbErrors298To746;

// HRESULT_FROM_WIN32 of the system's other error for exhausted memory is E_OUTOFMEMORY.
constexpr auto kNotEnoughMemory =
    static_cast<HRESULT>(0x80070000u | static_cast<unsigned>(ERROR_NOT_ENOUGH_MEMORY));

HRESULT Publish(const Failure& failure, const ClassDescription& called) {
  std::u16string source = failure.source;
  if (source.empty()) source.assign(u"Zepkit10.").append(called.name);
  ComPtr<ICreateErrorInfo> info;
  ComPtr<IErrorInfo> published;
  if (FAILED(CreateErrorInfo(&info))) throw std::bad_alloc();
  info.As(&published);
  info->SetGUID(*called.default_interface);
  info->SetSource(MutableText(source));
  info->SetDescription(
      MutableText(failure.description.empty() ? ErrorText(failure.number) : failure.description));
  SetErrorInfo(0, published.Get());
  return ToHresult(failure.number);
}

HRESULT PublishOutOfMemory(const ClassDescription& called) noexcept {
  const auto number = static_cast<std::int32_t>(ZepVbErrors3To98::zepVbErrOutOfMemory);
  try {
    return Publish({number, {}, {}}, called);
  } catch (...) {
    return Refuse(ToHresult(number));
  }
}

}  // namespace

HRESULT TranslateException(const ClassDescription& called) noexcept {
  try {
    try {
      throw;
    } catch (const Failure& failure) {
      return Publish(failure, called);
    } catch (const NullPointer&) {
      return Refuse(E_POINTER);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::length_error&) {
      throw std::bad_alloc();
    } catch (...) {
      return Publish({static_cast<std::int32_t>(ZepErrors::zepErrUnexpected), {}, {}}, called);
    }
  } catch (...) {
    return PublishOutOfMemory(called);
  }
}

std::int32_t FromHresult(HRESULT failed) noexcept {
  switch (failed) {
    case DISP_E_OVERFLOW:
      return static_cast<std::int32_t>(zepVbErrOverflow);
    case E_OUTOFMEMORY:
    case kNotEnoughMemory:
      return static_cast<std::int32_t>(zepVbErrOutOfMemory);
    case DISP_E_BADINDEX:
      return static_cast<std::int32_t>(zepVbErrSubscriptOutOfRange);
    case DISP_E_ARRAYISLOCKED:
      return static_cast<std::int32_t>(zepVbErrArrayFixedOrLocked);
    case DISP_E_DIVBYZERO:
      return static_cast<std::int32_t>(zepVbErrDivisionByZero);
    case DISP_E_TYPEMISMATCH:
    case DISP_E_BADVARTYPE:
      return static_cast<std::int32_t>(zepVbErrTypeMismatch);
    case DISP_E_UNKNOWNNAME:
    case DISP_E_MEMBERNOTFOUND:
      return static_cast<std::int32_t>(zepVbErrObjectDoesntSupportThisPropertyOrMethod);
    case DISP_E_PARAMNOTOPTIONAL:
      return static_cast<std::int32_t>(zepVbErrArgumentNotOptional);
    case DISP_E_BADPARAMCOUNT:
      return static_cast<std::int32_t>(zepVbErrWrongNumberOfArgumentsOrInvalidPropertyAssignment);
    default:
      break;
  }
  const bool runtime = FAILED(failed) && HRESULT_FACILITY(failed) == FACILITY_CONTROL;
  return runtime && HRESULT_CODE(failed) != 0 ? HRESULT_CODE(failed) : failed;
}

void RaiseRefusal(HRESULT refused) {
  if (refused == E_OUTOFMEMORY || refused == kNotEnoughMemory) throw std::bad_alloc();
  throw Failure{FromHresult(refused), {}, {}};
}

void RaiseValueRefusal(HRESULT refused) {
  RaiseRefusal(refused == E_INVALIDARG ? DISP_E_BADVARTYPE : refused);
}

HRESULT Refuse(HRESULT result) noexcept {
  SetErrorInfo(0, nullptr);
  return result;
}

}  // namespace zepkit10
