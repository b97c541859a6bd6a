#pragma once

#include <cstddef>
#include <cstdint>

/**
 * What travels on a socket, the same in 32-bit and 64-bit processes, little-endian.
 *
 * A message is a header, the parcel's stream padded to eight bytes, its records, and the payload:
 * the bytes that the records stand for, each padded to eight. It goes out in packets of at most
 * kPacketSize bytes, the first of which holds at least the header and carries all descriptors.
 */
namespace hidlhost {

constexpr uint32_t kMagic = 0x31544c48;  // "HLT1"
constexpr size_t kPacketSize = 68 * 1024;
constexpr uint64_t kMaxMessage = 32u << 20;
constexpr size_t kMaxDescriptors = 253;  // what the kernel takes in one message
/** Oneway calls that a sender may send before it has to let the receiver refuse one. */
constexpr size_t kMaxUnaskedBytes = 32 * 1024;
constexpr size_t kMaxUnaskedCalls = 128;
constexpr uint32_t kNoParent = 0xffffffff;

enum MessageKind : uint32_t {
    kHello = 1,     // first on every connection; code is the ConnectionRole, stream the two names
    kCall = 2,      // object, code, flags; a oneway call is answered if it wants an answer
    kReply = 3,     // code is the status
    kAcquire = 4,   // takes a reference to the object; answered where flags has kWantsAnswer
    kRelease = 5,   // gives back `code` references to the object
    kReceived = 6,  // the references in the last message that wants this have been taken over
};

enum ConnectionRole : uint32_t {
    kCalls = 1,   // one call at a time, and calls back within it, each answered before the next
    kEvents = 2,  // oneway calls and references, in order; its end is the end of the process
};

enum MessageFlags : uint32_t {
    kFlagOneway = 1,
    kFlagWantsAnswer = 2,
    kFlagWantsReceived = 4,
    kFlagRefused = 8,  // of a reply: nobody has looked at the arguments
};

struct MessageHeader {
    uint32_t magic;
    uint32_t kind;
    uint64_t object;
    uint64_t chain;  // the thread where the chain of nested calls began
    uint32_t code;
    uint32_t flags;
    uint32_t dataSize;
    uint32_t recordCount;
    uint32_t payloadSize;
    uint32_t descriptorCount;
};
static_assert(sizeof(MessageHeader) == 48, "part of the wire format");

enum RecordKind : uint32_t {
    kBuffer = 1,
    kNullBuffer = 2,
    kHandle = 3,
    kNullHandle = 4,
    kNullBinder = 5,
    kSendersBinder = 6,    // value is the number of an object in the sending process
    kReceiversBinder = 7,  // ... in the receiving process
    kOthersBinder = 8,     // ... in the process that the payload names
};

struct ObjectRecord {
    uint32_t kind;
    uint32_t length;  // bytes of payload
    uint32_t parent;  // index of the buffer whose pointer refers here, or kNoParent
    uint32_t parentOffset;
    uint64_t value;  // offset in the payload, or number of an object
};
static_assert(sizeof(ObjectRecord) == 24, "part of the wire format");

constexpr uint64_t padded(uint64_t size) {
    return (size + 7) & ~uint64_t{7};
}

}  // namespace hidlhost
