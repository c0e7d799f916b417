#include "platform/com/apartment.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include "platform/com/com_ptr.h"

namespace qmx::test {
namespace {

// Takes the thread's message filter away.
ComPtr<IMessageFilter> Taken() {
  ComPtr<IMessageFilter> filter;
  EXPECT_EQ(CoRegisterMessageFilter(nullptr, filter.Receiver()), S_OK);
  return filter;
}

class AServerThatIsBusy : public testing::Test {
 protected:
  // What COM does with the call after that time: it waits so many milliseconds and calls again, or gives up (-1).
  LONG Wait(DWORD elapsed, DWORD rejection = SERVERCALL_RETRYLATER) {
    return static_cast<LONG>(filter_->RetryRejectedCall(nullptr, elapsed, rejection));
  }

  std::shared_ptr<ComApartment> apartment_ = ComApartment::Enter();
  ComPtr<IMessageFilter> filter_ = Taken();
};

TEST_F(AServerThatIsBusy, IsCalledAgainEachTenthOfASecondFor30Seconds) {
  ASSERT_TRUE(filter_);
  EXPECT_EQ(Wait(0), 100);
  EXPECT_EQ(Wait(100), 100);
  EXPECT_EQ(Wait(29999), 100);
  EXPECT_EQ(Wait(30000), -1);
  EXPECT_EQ(Wait(0xFFFFFFFF), -1);
}

TEST_F(AServerThatIsBusy, IsCalledAgainIfItRejectsTheCall) {
  ASSERT_TRUE(filter_);
  EXPECT_EQ(Wait(0, SERVERCALL_REJECTED), 100);
  EXPECT_EQ(Wait(30000, SERVERCALL_REJECTED), -1);
}

TEST_F(AServerThatIsBusy, MayCallObjectsOfTheProgramMeanwhile) {
  ASSERT_TRUE(filter_);
  EXPECT_EQ(filter_->HandleInComingCall(CALLTYPE_NESTED, nullptr, 0, nullptr), DWORD{SERVERCALL_ISHANDLED});
  EXPECT_EQ(filter_->MessagePending(nullptr, 0, PENDINGTYPE_NESTED), DWORD{PENDINGMSG_WAITDEFPROCESS});
}

TEST_F(AServerThatIsBusy, IsWaitedForByAFilterThatComMayHold) {
  ASSERT_TRUE(filter_);
  ComPtr<IUnknown> unknown;
  EXPECT_EQ(filter_->QueryInterface(IID_IUnknown, unknown.UntypedReceiver()), S_OK);
  EXPECT_EQ(unknown.Get(), filter_.Get());
  ComPtr<IDispatch> other;
  EXPECT_EQ(filter_->QueryInterface(IID_IDispatch, other.UntypedReceiver()), E_NOINTERFACE);
  EXPECT_FALSE(other);
  apartment_ = {};
  EXPECT_EQ(Wait(0), 100);
}

class OtherFilter final : public IMessageFilter {
 public:
  virtual ~OtherFilter() = default;
  ULONG references = 1;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) override { return 0; }
  DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK, DWORD, DWORD) override { return 0; }
  DWORD STDMETHODCALLTYPE MessagePending(HTASK, DWORD, DWORD) override { return 0; }
};

TEST(AnApartmentThatIsLeft, GivesBackTheFilterOfAnotherLibrary) {
  ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
  OtherFilter other;
  EXPECT_EQ(CoRegisterMessageFilter(&other, nullptr), S_OK);
  std::shared_ptr<ComApartment> apartment = ComApartment::Enter();
  apartment = {};
  EXPECT_EQ(Taken().Get(), &other);
  EXPECT_EQ(other.references, 1u);
  CoUninitialize();
}

}  // namespace
}  // namespace qmx::test
