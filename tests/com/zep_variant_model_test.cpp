// Random operations on a tree of buffers, compared with the plain reading of the rules.
#include <algorithm>
#include <functional>
#include <map>
#include <random>

#include "com/both_bindings.h"
#include "com/sink.h"

namespace {

using client::Object;
using client::Value;
using Bytes = std::vector<unsigned char>;

/// A buffer as the rules describe it: whole contents are copied to and fro.
struct Model {
  Bytes data;
  Model* parent = nullptr;
  std::vector<Model*> views;
  int start = 0, length = 0;
  bool notifying = false;
  int changes = 0;  // how often Change was raised
  std::function<void()> handler = [] {};

  Bytes Cut(int from, int count) const {
    return Bytes(data.begin() + from - 1, data.begin() + from - 1 + count);
  }
  int Size() const { return static_cast<int>(data.size()); }

  void Announce(const Model* skipped = nullptr) {
    if (notifying) return;
    notifying = true;
    for (Model* view : std::vector<Model*>(views)) {
      if (view != skipped) view->ParentChanged();
    }
    if (parent) parent->ViewChanged(*this);
    ++changes;
    handler();
    notifying = false;
  }
  void Clamp() {
    start = std::max(1, std::min(start, parent->Size()));
    length = std::min(length, parent->Size() - start + 1);
  }
  void ParentChanged() {
    Clamp();
    data = parent->Cut(start, length);
    Announce(parent);
  }
  void ViewChanged(Model& view) {
    if (view.start - 1 + view.length > Size()) view.Clamp();  // cut while it announced
    Bytes whole = Cut(1, view.start - 1);
    whole.insert(whole.end(), view.data.begin(), view.data.end());
    const Bytes rest = Cut(view.start + view.length, Size() - view.start - view.length + 1);
    whole.insert(whole.end(), rest.begin(), rest.end());
    data = whole;
    view.length = view.Size();
    Announce(&view);
  }
};

Value ArrayOf(const Bytes& bytes) {
  VARIANT value;
  value.vt = VT_ARRAY | VT_UI1;
  SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), 1};
  value.parray = SafeArrayCreate(VT_UI1, 1, &bound);
  std::copy(bytes.begin(), bytes.end(), static_cast<unsigned char*>(value.parray->pvData));
  const Value made(value);
  VariantClear(&value);
  return made;
}

Bytes BytesOf(const Value& value) {
  EXPECT_EQ(VT_ARRAY | VT_UI1, value.type());
  const SAFEARRAY* array = value.raw().parray;
  if (!array) return {};
  EXPECT_EQ(1, array->rgsabound[0].lLbound);
  const auto* first = static_cast<const unsigned char*>(array->pvData);
  return Bytes(first, first + array->rgsabound[0].cElements);
}

class ZepVariantModelTest : public BothBindings {
 protected:
  struct Pair {
    Object buffer;
    Model model;
    Microsoft::WRL::ComPtr<client::Sink> sink;
  };

  Bytes Any(std::size_t longest) {
    Bytes bytes(random_() % (longest + 1));
    for (auto& byte : bytes) byte = static_cast<unsigned char>(random_());
    return bytes;
  }
  int UpTo(int most) { return static_cast<int>(random_() % static_cast<unsigned>(most + 1)); }

  void Step(std::vector<std::unique_ptr<Pair>>& pairs) {
    Pair& pair = *pairs[random_() % pairs.size()];
    Model& model = pair.model;
    switch (random_() % 8) {
      case 0: {
        const Bytes bytes = Any(12);
        EXPECT_OK(pair.buffer.Let(L"DataBytes", {ArrayOf(bytes)}));
        model.data = bytes;
        return model.Announce();
      }
      case 1:
      case 2: {
        const int index = UpTo(model.Size() + 1) + 1;
        const auto byte = static_cast<unsigned char>(random_());
        EXPECT_OK(pair.buffer.Let(L"DataByte", {index, static_cast<int>(byte)}));
        if (index > model.Size()) model.data.resize(static_cast<std::size_t>(index));
        model.data[static_cast<std::size_t>(index) - 1] = byte;
        return model.Announce();
      }
      case 3: {
        const int size = UpTo(14);
        EXPECT_OK(pair.buffer.Let(L"ByteLength", {size}));
        model.data.resize(static_cast<std::size_t>(size));
        return model.Announce();
      }
      case 4: {
        const int start = UpTo(model.Size()) + 1, length = UpTo(model.Size() - start + 1);
        const Bytes bytes = Any(6);
        EXPECT_OK(pair.buffer.Let(L"RangeBytes", {start, length, ArrayOf(bytes)}));
        const Bytes rest = model.Cut(start + length, model.Size() - start - length + 1);
        model.data.resize(static_cast<std::size_t>(start) - 1);
        model.data.insert(model.data.end(), bytes.begin(), bytes.end());
        model.data.insert(model.data.end(), rest.begin(), rest.end());
        return model.Announce();
      }
      case 5:
      case 6: {
        Pair& parent = *pairs[random_() % pairs.size()];
        if (model.parent || HasAbove(parent.model, model)) return;
        const int start = UpTo(parent.model.Size()) + 1;
        const int length = UpTo(parent.model.Size() - start + 1);
        EXPECT_OK(pair.buffer.Call(L"ConnectAsRange", {parent.buffer, start, length, true}));
        parent.model.views.push_back(&model);
        model.data = parent.model.Cut(start, length);
        model.Announce();
        model.start = start, model.length = length;
        model.parent = &parent.model;
        return;
      }
      default:
        if (!model.parent || random_() % 2) return;
        EXPECT_OK(pair.buffer.Call(L"DisconnectAsRange"));
        std::erase(model.parent->views, &model);
        model.parent = nullptr;
    }
  }

  /// Trees only: what loops do is left open.
  static bool HasAbove(const Model& model, const Model& other) {
    return &model == &other || (model.parent && HasAbove(*model.parent, other));
  }

  /// What a handler does: it gives a buffer a length, or a byte at a position.
  struct Action {
    std::size_t target;
    bool cuts;
    int number;

    void Do(const Object& buffer) const {
      EXPECT_OK(cuts ? buffer.Let(L"ByteLength", {number})
                     : buffer.Let(L"DataByte", {number + 1, number}));
    }
    void Do(Model& model) const {
      const auto index = static_cast<std::size_t>(number);
      if (cuts) {
        model.data.resize(index);
      } else {
        model.data.resize(std::max(index + 1, model.data.size()));
        model.data[index] = static_cast<unsigned char>(number);
      }
      model.Announce();
    }
  };
  using Actions = std::vector<Action>;

  static void Expect(const Pair& pair) {
    ASSERT_EQ(pair.model.data, BytesOf(pair.buffer.Get(L"DataBytes").value));
    ASSERT_EQ(static_cast<std::size_t>(pair.model.changes), pair.sink->events().size());
    if (!pair.model.parent) return;
    ASSERT_EQ(pair.buffer.Get(L"RangeStart"), pair.model.start);
    ASSERT_EQ(pair.buffer.Get(L"RangeLength"), pair.model.length);
  }

  std::mt19937 random_{20260131};
};

TEST_P(ZepVariantModelTest, BehavesAsTheRulesRead) {
  for (int round = 0; round < 60; ++round) {
    std::vector<std::unique_ptr<Pair>> pairs;
    for (int i = 0; i < 6; ++i) {
      auto pair = std::make_unique<Pair>();
      pair->buffer = Create(CLSID_ZepVariant);
      pair->sink = client::Sink::Connect(pair->buffer.get(), DIID___ZepVariant);
      pairs.push_back(std::move(pair));
    }
    for (int step = 0; step < 60 && !HasFailure(); ++step) {
      Step(pairs);
      for (std::size_t i = 0; i < pairs.size(); ++i) {
        const Pair& pair = *pairs[i];
        ASSERT_EQ(pair.model.data, BytesOf(pair.buffer.Get(L"DataBytes").value))
            << "round " << round << ", step " << step << ", buffer " << i;
        ASSERT_EQ(pair.buffer.Get(L"IsRange"), pair.model.parent != nullptr);
        if (pair.model.parent) {
          ASSERT_EQ(pair.buffer.Get(L"RangeStart"), pair.model.start) << round << " " << step;
          ASSERT_EQ(pair.buffer.Get(L"RangeLength"), pair.model.length) << round << " " << step;
        }
        ASSERT_EQ(static_cast<std::size_t>(pair.model.changes), pair.sink->events().size())
            << "round " << round << ", step " << step << ", buffer " << i;
      }
    }
    for (const auto& pair : pairs) pair->sink->Disconnect();
  }
}

TEST_P(ZepVariantModelTest, HandlersThatWriteAreInStepToo) {
  constexpr std::size_t kCount = 6;
  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    std::vector<std::unique_ptr<Pair>> pairs;
    Actions real(40), modelled;  // last first
    for (Action& action : real) action = {random_() % kCount, random_() % 2 == 0, UpTo(12)};
    for (std::size_t i = 0; i < kCount; ++i) {
      auto pair = std::make_unique<Pair>();
      pair->buffer = Create(CLSID_ZepVariant);
      pair->model.data = Bytes(10, static_cast<unsigned char>('a' + i));
      EXPECT_OK(pair->buffer.Let(L"DataBytes", {ArrayOf(pair->model.data)}));
      if (i > 0) {
        Pair& parent = *pairs[random_() % i];
        const int size = parent.model.Size(), start = UpTo(size) + 1;
        const int length = UpTo(size - start + 1);
        EXPECT_OK(pair->buffer.Call(L"ConnectAsRange", {parent.buffer, start, length, true}));
        parent.model.views.push_back(&pair->model);
        pair->model.parent = &parent.model;
        pair->model.start = start, pair->model.length = length;
        pair->model.data = parent.model.Cut(start, length);
      }
      pairs.push_back(std::move(pair));
    }
    modelled = real;
    const auto take = [&](Actions& actions, auto&& act) {
      if (actions.empty()) return;
      const Action action = actions.back();
      actions.pop_back();
      act(action, *pairs[action.target]);
    };
    const auto act_real = [](const Action& action, Pair& pair) { action.Do(pair.buffer); };
    const auto act_modelled = [](const Action& action, Pair& pair) { action.Do(pair.model); };
    for (const auto& pair : pairs) {
      pair->model.handler = [&] { take(modelled, act_modelled); };
      pair->sink =
          client::Sink::Connect(pair->buffer.get(), DIID___ZepVariant, [&](const client::Event&) {
            take(real, act_real);
            return S_OK;
          });
    }
    while (!real.empty() && !HasFailure()) {
      take(real, act_real);
      take(modelled, act_modelled);
      ASSERT_EQ(real.size(), modelled.size());
      for (const auto& pair : pairs) Expect(*pair);
    }
    for (const auto& pair : pairs) pair->sink->Disconnect();
  }
}

RUN_IN_BOTH_BINDINGS(ZepVariantModelTest);

}  // namespace
