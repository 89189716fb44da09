// The enumerators of connections, connection points and collections.
#include <ocidl.h>
#include <olectl.h>

#include <array>

#include "com/probe/probe_test.h"
#include "com/sink.h"

namespace {

using client::Sink;
using client::Value;
using Microsoft::WRL::ComPtr;

class EnumeratorTest : public probe::ProbeTest {
 protected:
  ComPtr<IEnumVARIANT> Values() {
    ComPtr<::_ProbeList> list;
    ComPtr<IUnknown> found;
    ComPtr<IEnumVARIANT> values;
    EXPECT_EQ(S_OK, vtable()->get_List(&list));
    EXPECT_EQ(S_OK, list->get_NewEnum(&found));
    EXPECT_EQ(S_OK, found.As(&values));
    return values;
  }
  ComPtr<IConnectionPointContainer> Container() {
    ComPtr<IConnectionPointContainer> container;
    EXPECT_EQ(S_OK, probe_.As(&container));
    return container;
  }
};

/// The Value of each object that is left, which this takes out.
std::vector<Value> Rest(IEnumVARIANT* values) {
  std::vector<Value> rest;
  for (Value item; values->Next(1, &item.raw(), nullptr) == S_OK; item = Value()) {
    rest.push_back(probe::Invoke(item.raw().pdispVal, L"Value").value);
  }
  return rest;
}

TEST_F(EnumeratorTest, NextGivesAsManyAsThereAre) {
  const auto values = Values();
  std::array<Value, 3> items;
  ULONG fetched = 99;
  EXPECT_EQ(S_FALSE, values->Next(3, &items[0].raw(), &fetched));
  EXPECT_EQ(2u, fetched);
  EXPECT_EQ(VT_DISPATCH, items[1].type());
  EXPECT_EQ(VT_EMPTY, items[2].type());
  Value none;
  EXPECT_EQ(S_FALSE, values->Next(1, &none.raw(), &fetched));
  EXPECT_EQ(0u, fetched);
  EXPECT_EQ(Value(), none);
  EXPECT_EQ(S_FALSE, values->Next(1, &none.raw(), nullptr));
  EXPECT_EQ(S_OK, values->Next(0, &none.raw(), &fetched));
  EXPECT_EQ(0u, fetched);
}

TEST_F(EnumeratorTest, OnlyASingleItemNeedsNoCount) {
  const auto values = Values();
  std::array<Value, 2> items;
  EXPECT_EQ(E_POINTER, values->Next(2, &items[0].raw(), nullptr));
  ULONG fetched = 99;
  EXPECT_EQ(E_POINTER, values->Next(1, nullptr, &fetched));
  EXPECT_EQ(0u, fetched);
  EXPECT_EQ(S_OK, values->Next(1, &items[0].raw(), nullptr));
  EXPECT_EQ(std::vector<Value>{20}, Rest(values.Get()));
}

TEST_F(EnumeratorTest, SkipEndsAtTheEnd) {
  const auto values = Values();
  EXPECT_EQ(S_OK, values->Skip(0));
  EXPECT_EQ(S_OK, values->Skip(1));
  EXPECT_EQ(S_FALSE, values->Skip(2));
  EXPECT_EQ(S_FALSE, values->Skip(0xFFFFFFFF));
  EXPECT_EQ(S_OK, values->Skip(0));
  EXPECT_EQ(std::vector<Value>{}, Rest(values.Get()));
  EXPECT_EQ(S_OK, values->Reset());
  EXPECT_EQ((std::vector<Value>{10, 20}), Rest(values.Get()));
}

TEST_F(EnumeratorTest, ClonesGoOnFromWhereTheyWereMade) {
  const auto values = Values();
  EXPECT_EQ(S_OK, values->Skip(1));
  ComPtr<IEnumVARIANT> clone;
  EXPECT_EQ(S_OK, values->Clone(&clone));
  EXPECT_EQ(std::vector<Value>{20}, Rest(values.Get()));
  EXPECT_EQ(std::vector<Value>{20}, Rest(clone.Get()));
  EXPECT_EQ(S_OK, clone->Reset());
  EXPECT_EQ((std::vector<Value>{10, 20}), Rest(clone.Get()));
  EXPECT_EQ(E_POINTER, values->Clone(nullptr));
}

TEST_F(EnumeratorTest, EnumeratorsOutliveTheirCollection) {
  const auto values = Values();
  probe_.Reset();
  EXPECT_EQ((std::vector<Value>{10, 20}), Rest(values.Get()));
}

TEST_F(EnumeratorTest, EnumeratorsHaveTheirInterfacesOnly) {
  const auto values = Values();
  void* result = this;
  EXPECT_EQ(E_NOINTERFACE, values->QueryInterface(IID_IEnumConnections, &result));
  EXPECT_EQ(nullptr, result);
  EXPECT_EQ(E_POINTER, values->QueryInterface(IID_IUnknown, nullptr));
}

TEST_F(EnumeratorTest, PointsAreEnumerated) {
  ComPtr<IEnumConnectionPoints> points, clone;
  ASSERT_EQ(S_OK, Container()->EnumConnectionPoints(&points));
  EXPECT_EQ(E_POINTER, Container()->EnumConnectionPoints(nullptr));
  ComPtr<IConnectionPoint> point, found;
  ULONG fetched = 0;
  EXPECT_EQ(S_OK, points->Next(1, &point, &fetched));
  EXPECT_EQ(1u, fetched);
  EXPECT_EQ(S_OK, Container()->FindConnectionPoint(DIID___Probe, &found));
  EXPECT_EQ(found.Get(), point.Get());
  ComPtr<IConnectionPoint> none;
  EXPECT_EQ(S_FALSE, points->Next(1, &none, nullptr));
  EXPECT_EQ(S_OK, points->Reset());
  EXPECT_EQ(S_OK, points->Clone(&clone));
  EXPECT_EQ(S_OK, clone->Skip(1));
  EXPECT_EQ(S_FALSE, clone->Skip(1));
}

TEST_F(EnumeratorTest, ConnectionsAreEnumeratedAsTheyWere) {
  ComPtr<IConnectionPoint> point;
  ASSERT_EQ(S_OK, Container()->FindConnectionPoint(DIID___Probe, &point));
  EXPECT_EQ(E_POINTER, point->EnumConnections(nullptr));
  const auto first = Sink::Connect(object(), DIID___Probe),
             second = Sink::Connect(object(), DIID___Probe);
  ComPtr<IEnumConnections> connections, later;
  ASSERT_EQ(S_OK, point->EnumConnections(&connections));
  EXPECT_EQ(S_OK, second->Disconnect());
  CONNECTDATA data[3] = {};
  ULONG fetched = 0;
  EXPECT_EQ(S_FALSE, connections->Next(3, data, &fetched));
  ASSERT_EQ(2u, fetched);
  EXPECT_EQ(first.Get(), data[0].pUnk);
  EXPECT_EQ(second.Get(), data[1].pUnk);
  EXPECT_NE(data[0].dwCookie, data[1].dwCookie);
  EXPECT_EQ(CONNECT_E_NOCONNECTION, point->Unadvise(data[1].dwCookie));
  EXPECT_EQ(S_OK, point->Unadvise(data[0].dwCookie));
  for (ULONG i = 0; i < fetched; ++i) data[i].pUnk->Release();
  ASSERT_EQ(S_OK, point->EnumConnections(&later));
  EXPECT_EQ(S_FALSE, later->Next(1, data, &fetched));
}

}  // namespace
