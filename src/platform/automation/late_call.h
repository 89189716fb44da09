#pragma once

#include <windows.h>
#include <oaidl.h>

#include <span>
#include <string_view>
#include <vector>

#include "platform/automation/variant.h"

namespace zepkit10 {

/// The DISPID of a member of a client's object; error 438 where it has none of that name.
DISPID FindMember(IDispatch& object, std::u16string_view name, LCID locale);

/// Calls a member of a client's object late bound, with arguments in the order of the parameters.
/// `flags` are DISPATCH_…; an assignment takes the value as its last argument. What the object
/// raises becomes a `Failure` with its own number, source and description.
Variant CallMember(IDispatch& object, DISPID member, WORD flags, LCID locale,
                   std::span<const VARIANT> arguments = {});

/// What a collection holds, in order: any automation object that has an enumerator, or `Count` and
/// `Item`. Error 451 for any other.
std::vector<Variant> ItemsOf(IDispatch& collection);

}  // namespace zepkit10
