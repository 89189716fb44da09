#pragma once

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <functional>
#include <random>
#include <vector>

#include "monkey/type_library.h"

namespace monkey {

/// The objects of the component that the monkey holds. They are bounded in number: where one too
/// many joins, another one is let go.
class Population {
 public:
  using Objects = std::vector<IDispatch*>;

  /// What hears an object's events: connected when the object joins, before anything else is done
  /// with it, and disconnected when it leaves.
  struct Connection {
    Microsoft::WRL::ComPtr<IConnectionPoint> point;
    DWORD cookie;
  };
  using Connect = std::function<std::vector<Connection>(IDispatch*, const Class&)>;

  Population(std::mt19937& random, const std::vector<Class>& classes, Connect connect)
      : random_(random), classes_(classes), connect_(std::move(connect)) {}

  /// Takes in an object that a member gave, if it is one of the component's and new.
  void Join(IUnknown* object);

  /// One of a class, null where there is none.
  IDispatch* AnyOf(int class_index);
  bool Has(IDispatch* object) const;

  /// The class of one that is there.
  int ClassOf(IDispatch* object) const;

  /// Lets one go that is there: at once, unless it may hold itself by what was put into it.
  void LetGo(IDispatch* object);
  /// Empties and lets go those; not in the middle of a call.
  void SeeOff();
  void LetOneGo();
  void LetAllGo();

  /// All that may be passed as arguments: these objects and the strangers.
  const Objects& Arguments() const { return arguments_; }
  void AddStrangers(const Objects& strangers);

  /// The last object of the platform's that a member gave: a picture. Null where there is none.
  IDispatch* Guest() const { return guest_.Get(); }

  /// Any enumerator that a collection gave, null where there is none.
  IEnumVARIANT* AnyEnumerator();

 private:
  struct Inhabitant {
    Microsoft::WRL::ComPtr<IDispatch> object;
    int class_index;
    std::vector<Connection> connections;
  };

  void JoinAsEnumerator(IUnknown* object);
  int ClassIndexOf(IDispatch* object) const;
  std::vector<Inhabitant>::const_iterator Find(IDispatch* object) const;
  unsigned Below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }

  std::mt19937& random_;
  const std::vector<Class>& classes_;
  const Connect connect_;
  std::vector<Inhabitant> inhabitants_;
  std::vector<Inhabitant> leaving_;
  std::vector<Microsoft::WRL::ComPtr<IEnumVARIANT>> enumerators_;
  Microsoft::WRL::ComPtr<IDispatch> guest_;
  Objects arguments_;
};

}  // namespace monkey
