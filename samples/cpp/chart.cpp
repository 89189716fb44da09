// Draws a chart of five functions, tells what it hears on the way, and saves the picture:
//     chart PICTURE.png
// Needs nothing of the component but its header and GUIDs, both made from the type library.
#include <windows.h>
#include <gdiplus.h>
#include <ocidl.h>
#include <olectl.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>

#include "Zepkit10.h"

namespace {

using Microsoft::WRL::ComPtr;

/// Ends the program with the component's own words where a call fails.
void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  ComPtr<IErrorInfo> info;
  BSTR text = nullptr;
  if (GetErrorInfo(0, &info) == S_OK) info->GetDescription(&text);
  std::fprintf(stderr, "%s failed: 0x%08lx %ls\n", what, static_cast<unsigned long>(result),
               text ? text : L"");
  std::exit(1);
}

/// A BSTR for the length of a call.
class Text {
 public:
  explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
  ~Text() { SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  operator BSTR() const { return text_; }

 private:
  BSTR text_;
};

/// Hears the chart's events: NewFnc is 1, NewPoint is 2. Arguments come last first.
class Progress final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___Chart;
    *result = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  // Lives on the stack of main, longer than the chart.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments,
                                   VARIANT*, EXCEPINFO*, UINT*) override {
    if (event == 1) {
      Finish();
      std::printf("  %-14ls x from %g to %g ", arguments->rgvarg[5].bstrVal,
                  arguments->rgvarg[3].dblVal, arguments->rgvarg[4].dblVal);
    } else if (++points_ % 5000 == 0) {
      std::printf(".");
    }
    return S_OK;
  }
  void Finish() {
    if (points_ > 0) std::printf(" %ld points\n", points_);
    points_ = 0;
  }

 private:
  long points_ = 0;
};

void AddFunction(_FncInfos* functions, const wchar_t* term) {
  ComPtr<_FncInfo> function;
  ComPtr<_Expression> expression;
  Check(functions->Add(Text(term), &function), "FncInfos.Add");
  Check(function->get_Expression(&expression), "FncInfo.Expression");
  Check(expression->put_EString(Text(term)), "Expression.EString");
  function->put_XLow(-6.5);
  function->put_XHigh(6.5);
  function->put_YLow(-3.5);
  function->put_YHigh(3.5);
  function->put_Interval(1.0 / 2048);
}

void SavePng(IPictureDisp* picture, const wchar_t* path) {
  ComPtr<IPicture> bitmap;
  OLE_HANDLE handle = 0;
  Check(picture->QueryInterface(IID_PPV_ARGS(&bitmap)), "IPicture");
  Check(bitmap->get_Handle(&handle), "IPicture.Handle");
  Gdiplus::Bitmap image(reinterpret_cast<HBITMAP>(static_cast<INT_PTR>(static_cast<int>(handle))),
                        nullptr);
  const CLSID png = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0, 0, 0xf8, 0x1e, 0xf3, 0x2e}};
  Check(image.Save(path, &png, nullptr) == Gdiplus::Ok ? S_OK : E_FAIL, "saving the PNG");
}

void Draw(const wchar_t* path) {
  ComPtr<_Global> zepkit;
  ComPtr<_Charts> charts;
  ComPtr<_Chart> chart;
  ComPtr<_VarSets> sets;
  ComPtr<_VarSet> variables;
  ComPtr<_FncInfos> functions;
  Check(CoCreateInstance(CLSID_Global, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&zepkit)),
        "Creating Zepkit10.Global");
  zepkit->get_VarSets(&sets);
  zepkit->get_Charts(&charts);
  VARIANT unnamed{};
  unnamed.vt = VT_ERROR;
  unnamed.scode = DISP_E_PARAMNOTFOUND;
  Check(sets->Add(&unnamed, &variables), "VarSets.Add");
  Check(charts->Add(Text(L"demo"), &chart), "Charts.Add");
  Check(chart->putref_VarSet(variables.Get()), "Chart.VarSet");
  chart->put_PictureWidth(720);
  chart->put_PictureHeight(420);
  chart->put_CoordMetric(1);

  Check(chart->get_FncInfos(&functions), "Chart.FncInfos");
  for (const wchar_t* term : {L"2*SIN(x)", L"1/x", L"x^2/8-3", L"3-|x|", L"3*EXP(0-x^2/2)"}) {
    AddFunction(functions.Get(), term);
  }

  Progress progress;
  ComPtr<IConnectionPointContainer> container;
  ComPtr<IConnectionPoint> point;
  DWORD cookie = 0;
  Check(chart.As(&container), "IConnectionPointContainer");
  Check(container->FindConnectionPoint(DIID___Chart, &point), "FindConnectionPoint");
  Check(point->Advise(&progress, &cookie), "Advise");
  Check(chart->Draw(), "Chart.Draw");
  progress.Finish();
  point->Unadvise(cookie);

  SAFEARRAY* errors = nullptr;
  Check(chart->get_Errors(&errors), "Chart.Errors");
  LONG division_by_zero = 11, count = 0;
  SafeArrayGetElement(errors, &division_by_zero, &count);
  SafeArrayDestroy(errors);
  std::printf("  1/x at its pole: %ld sample without a point\n", count);

  ComPtr<IPictureDisp> picture;
  Check(chart->get_Picture(&picture), "Chart.Picture");
  SavePng(picture.Get(), path);
  chart->Delete();
  variables->Delete();
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: chart PICTURE.png\n");
    return 2;
  }
  Check(OleInitialize(nullptr), "OleInitialize");
  ULONG_PTR gdiplus = 0;
  const Gdiplus::GdiplusStartupInput startup;
  Gdiplus::GdiplusStartup(&gdiplus, &startup, nullptr);
  std::printf("Drawing\n");
  Draw(argv[1]);
  std::printf("The chart is in %ls\n", argv[1]);
  Gdiplus::GdiplusShutdown(gdiplus);
  OleUninitialize();
  return 0;
}
