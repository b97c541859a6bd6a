#pragma once

#include <hwbinder/Binder.h>

namespace android {
namespace hardware {

/** An interface object with a binder behind it: every proxy. */
class IInterface : public virtual RefBase {
  public:
    static sp<IBinder> asBinder(const IInterface* interface);
    static sp<IBinder> asBinder(const sp<IInterface>& interface);

  protected:
    IInterface();
    ~IInterface() override;
    virtual IBinder* onAsBinder() = 0;
};

/** The base of a generated proxy of INTERFACE. */
template <typename INTERFACE>
class BpInterface : public INTERFACE, public IInterface, public BpHwRefBase {
  public:
    explicit BpInterface(const sp<IBinder>& remote) : BpHwRefBase(remote) {}

  protected:
    IBinder* onAsBinder() override { return remote(); }
};

}  // namespace hardware
}  // namespace android
