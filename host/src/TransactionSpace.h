#pragma once

#include <atomic>
#include <cstddef>

#include "Wire.h"

namespace hidlhost {

/**
 * The bytes of the transactions in progress towards one node: calls until they have run, replies
 * until their caller is through with them. A device gives each process one megabyte less two pages
 * for them, and oneway calls no more than half of it.
 */
class TransactionSpace {
  public:
    /** The bytes that the process may hold according to its settings. */
    static size_t limit(bool oneway);
    /** The bytes that a message takes on a device. */
    static size_t sizeOf(const MessageHeader& header);

    /** One more of them, never destroyed: parcels may outlive their node. */
    static TransactionSpace& make();

    /** Gives back what it holds at its end. */
    class Share {
      public:
        Share() = default;
        ~Share() { reset(); }
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;
        void reset();

      private:
        friend class TransactionSpace;
        TransactionSpace* mSpace = nullptr;
        size_t mBytes = 0;
        bool mOneway = false;
    };

    /** False if there is not enough left. */
    bool take(size_t bytes, bool oneway, Share* share);
    /** Takes more than there is if need be. */
    void takeAnyway(size_t bytes, bool oneway, Share* share);

  private:
    std::atomic<size_t> mUsed{0};
    std::atomic<size_t> mUsedOneway{0};
    TransactionSpace* mNext = nullptr;
};

}  // namespace hidlhost
