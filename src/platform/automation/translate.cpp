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

HRESULT Publish(const Failure& failure, const ClassDescription& called) {
  const std::u16string source =
      failure.source.empty() ? std::u16string(u"Zepkit10.") + called.name : failure.source;
  ComPtr<ICreateErrorInfo> info;
  ComPtr<IErrorInfo> published;
  if (FAILED(CreateErrorInfo(&info)) || FAILED(info.As(&published))) throw std::bad_alloc();
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

HRESULT Refuse(HRESULT result) noexcept {
  SetErrorInfo(0, nullptr);
  return result;
}

}  // namespace zepkit10
