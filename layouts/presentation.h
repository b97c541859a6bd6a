/**
 * What crosses the broadcast, input, multi-view, service-context, sound, picture, power and
 * TV-application methods of this television. Video paths are "main" (also "") and "sub"; a path
 * as a number is 0 or 1. Truth values are 0 and 1.
 */
#pragma once

#include <cstddef>
#include <cstdint>

namespace qeltvd::layouts {

constexpr uint32_t kPaths = 2;

// Tuning

enum TuningStatus : int32_t {
    kTuningStopped = 0,
    /** The tuner looks for the signal, or the input for its source. */
    kTuningSearches = 1,
    /** There is a signal; the decoders start. */
    kTuningLocked = 2,
    kTuningPlays = 3,
    kTuningFailed = 4,
};

enum TuningError : int32_t {
    kTuningNoError = 0,
    kTuningNoSignal = 1,
    kTuningScrambled = 2,
    /** A locked channel or a blocked input. */
    kTuningBlocked = 3,
    /** The signal is there and the service is not in it. */
    kTuningNoService = 4,
};

/** Kind of a broadcast notification. Unless told otherwise: channel, path, TuningError, banner. */
enum BroadcastEvent : int32_t {
    kBroadcastSelecting = 1,
    kBroadcastLocked = 2,
    kBroadcastPlays = 3,
    kBroadcastFailed = 4,
    kBroadcastStopped = 5,
    /** The signal of a channel that played is gone; kBroadcastSelecting follows its return. */
    kBroadcastSignalLost = 6,
    /** Whether the banner is visible, 0, 0, 0. */
    kBroadcastBanner = 7,
    /** The number so far, digits, whether the entry is complete, 0. */
    kBroadcastDigits = 8,
    /** Whether the favourite icon shows, 0, 0, 0. */
    kBroadcastFavouriteIcon = 9,
};

/**
 * Notifications of service contexts: the listener gets BroadcastEvent 1 to 6, TuningError and
 * path; the select notification BroadcastEvent, channel and TuningError. They come for the context
 * of the path itself and for every context that is open on it.
 */
constexpr uint32_t contextOfPath(uint32_t path) {
    return path + 1;
}

/** Attributes of get_connect_attr(). */
enum ConnectAttribute : int32_t {
    kConnectLocked = 1,
    /** 0 to 100. */
    kConnectLevel = 2,
    kConnectQuality = 3,
    /** Errors in 10^9 bits. */
    kConnectBitErrors = 4,
    kConnectFrequencyKHz = 5,
    /** Thousands of symbols per second; of terrestrial signals the bandwidth in kHz. */
    kConnectSymbolRate = 6,
    /** As in multiplex_record_t. */
    kConnectModulation = 7,
    kConnectSystem = 8,
    kConnectChannel = 9,
    kConnectList = 10,
    kConnectStatus = 11,
    kConnectError = 12,
};

/** Words of a frequency change: word1 kHz, word2 and word3 not looked at; `head` is this. */
struct FrequencyHead {
    /** As in multiplex_record_t; 0 any. */
    uint32_t system;
    /** As in multiplex_record_t; 0 any. */
    uint32_t polarisation;
    uint32_t unused[2];
};
static_assert(sizeof(FrequencyHead) == 16);

/** Remote-control keys; those of Android. The digits are 7 (for 0) to 16. */
enum Key : int32_t {
    kKeyDigit0 = 7,
    kKeyDigit9 = 16,
    kKeyOk = 23,
    kKeyVolumeUp = 24,
    kKeyVolumeDown = 25,
    kKeyPower = 26,
    kKeyPeriod = 56,
    kKeyMute = 164,
    kKeyInfo = 165,
    kKeyChannelUp = 166,
    kKeyChannelDown = 167,
    kKeyInput = 178,
    kKeyAudioTrack = 222,
    kKeyLastChannel = 229,
};

// Inputs

enum InputType : uint8_t {
    kInputTuner = 0,
    kInputComposite = 1,
    kInputComponent = 2,
    kInputScart = 3,
    kInputVga = 4,
    kInputHdmi = 5,
};

/** Bits of the last byte of an input's record. */
constexpr uint8_t kInputHasSignal = 1;
constexpr uint8_t kInputMhl = 2;

/** Label 0 is none; the last one stands for the user's own name. */
constexpr uint8_t kInputLabels = 9;
constexpr uint8_t kInputLabelUser = 8;

/** Form of a name: as printed beside the socket, or by label or user's name where there is one. */
enum NameForm : int32_t { kNamePlain = 0, kNameShown = 1 };

// Multi-view. Regions are in ten-thousandths of the screen.

enum TvMode : int32_t { kTvNormal = 0, kTvPictureInPicture = 1, kTvSideBySide = 2 };
constexpr uint32_t kRegionFull = 10000;
enum VideoResource : int32_t { kResourceNone = 0, kResourcePath = 1, kResourceWithoutPath = 2 };

// Service contexts

/** Block of stream type 0: by channel id, or where that is 0 by what the broadcast calls it. */
struct SelectChannel {
    uint32_t channel;
    uint32_t list;
    uint16_t networkId;
    uint16_t streamId;
    uint16_t serviceId;
    uint16_t reserved0;
    uint8_t reserved[48];
};
static_assert(sizeof(SelectChannel) == 64);

/** Block of stream type 4. Without a block the first text says what: a channel number or input. */
struct SelectInput {
    uint32_t source;
    uint8_t reserved[28];
};
static_assert(sizeof(SelectInput) == 32);

/** Bit of the value beside a select request. */
constexpr uint32_t kSelectWithBanner = 1;

struct VideoSource {
    uint32_t width;
    uint32_t height;
    /** Frames per second times 1000. */
    uint32_t frameRate;
    uint32_t interlaced;
    uint32_t aspectWidth;
    uint32_t aspectHeight;
    /** A VideoCodec. */
    uint32_t codec;
    uint32_t bits;
    /** "1920x1080i 25"; empty when nothing plays. */
    char text[36];
    uint8_t reserved[64];
};
static_assert(sizeof(VideoSource) == 132);

enum VideoCodec : uint32_t {
    kVideoNone = 0,
    kVideoMpeg2 = 1,
    kVideoAvc = 2,
    kVideoHevc = 3,
    kVideoRaw = 4
};

/** Also the audio information of a service context. */
struct AudioTrack {
    /** From 1. */
    uint32_t track;
    uint32_t pid;
    char language[4];
    /** An AudioCodec. */
    uint8_t codec;
    uint8_t channels;
    /** An AudioPurpose. */
    uint8_t purpose;
    uint8_t current;
    uint32_t sampleRate;
    uint32_t kbitPerSecond;
};
static_assert(sizeof(AudioTrack) == 24);

enum AudioCodec : uint8_t { kAudioMpeg = 1, kAudioAc3 = 2, kAudioAac = 3, kAudioPcm = 4 };
enum AudioPurpose : uint8_t { kAudioMain = 0, kAudioOriginal = 1, kAudioDescription = 2 };

/** Attributes of c_svctx_get(); user attributes come back as stream << 8 | attribute | this. */
enum ContextAttribute : uint32_t {
    kContextPath = 1,
    kContextChannel = 2,
    /** Two words: TuningStatus, TuningError. */
    kContextStatus = 3,
    kContextSource = 4,
    /** Name of the channel or input. */
    kContextName = 5,
    kContextStreamAttribute = 0x10000,
};
enum Stream : uint32_t { kStreamVideo = 0, kStreamAudio = 1, kStreamSubtitle = 2 };
/** Attribute of the audio stream, one word: selects a track. Others are kept and not looked at. */
constexpr uint32_t kStreamTrack = 1;

/** Connection attribute of 48 bytes. */
struct Connection {
    uint32_t path;
    uint32_t source;
    uint32_t status;
    uint32_t error;
    uint32_t channel;
    uint32_t frequencyKHz;
    uint32_t symbolRate;
    uint32_t modulation;
    uint32_t system;
    uint32_t level;
    uint32_t quality;
    uint32_t bitErrors;
};
static_assert(sizeof(Connection) == 48);

enum ConnectionCode : uint32_t {
    kConnectionAll = 0xC1000004,
    kConnectionLocked = 0xC1000007,
    kConnectionLevel = 0xC1000008,
    kConnectionQuality = 0xC100000C,
    kConnectionBitErrors = 0xC1000013,
    /** Set: tunes; the first word is kHz, the others not looked at. */
    kConnectionFrequency = 0xC0000065,
    /** Set: the region of the picture, four words. */
    kConnectionRegion = 0xC100021F,
    /** Set: video mute, one word. */
    kConnectionMute = 0xC0000069,
};

/** Info blocks; those from kInfoUser to kInfoUserLast can be set and are kept with the context. */
enum InfoCode : uint32_t {
    kInfoVideo = 1,
    kInfoAudio = 2,
    kInfoConnection = 3,
    kInfoUser = 0x100,
    kInfoUserLast = 0x1ff,
};

/** Condition of a source notification of a component; width, height. */
enum SourceDetect : uint32_t { kSourceDetected = 1, kSourceLost = 2 };
/** Types of stream components. */
enum ComponentType : uint32_t { kComponentVideo = 0, kComponentAudio = 1, kComponentSubtitle = 2 };

// Sound

enum VolumeType : int32_t {
    kVolumeSpeaker = 0,
    kVolumeHeadphone = 1,
    kVolumeDigital = 2,
    kVolumeDescription = 3,
    kVolumeBluetooth = 4,
};
constexpr int32_t kVolumeTypes = 5;
constexpr int32_t kVolumeMaximum = 100;

/** Kind of an audio notification; its arguments, those that are left out 0. */
enum AudioEvent : int32_t {
    /** Path, number of tracks. */
    kAudioTracksChanged = 1,
    /** Path, track. */
    kAudioTrackSelected = 2,
    /** VolumeType, volume. */
    kAudioVolume = 3,
    /** VolumeType, muted. */
    kAudioMute = 4,
    /** Effect. */
    kAudioEffect = 5,
    /** AudioValue, value. */
    kAudioValueChanged = 6,
};

enum AudioValue : int32_t {
    kAudioDescriptionOn = 1,
    /** Volume of the description beside the main sound, 0 to 100. */
    kAudioDescriptionMix = 2,
    /** 0 to 250. */
    kAudioDelayMs = 3,
    /** 0 automatic, 1 PCM, 2 as it comes. */
    kAudioDigitalOut = 4,
    /** 0 to 3. */
    kAudioDialogue = 5,
    /** Of the current track, only read. */
    kAudioCurrentCodec = 100,
    kAudioCurrentChannels = 101,
    kAudioCurrentRate = 102,
};

/** Audio data: five bands of the equaliser, signed bytes from -12 to 12. */
constexpr int32_t kAudioEqualiser = 1;
constexpr uint32_t kAudioEqualiserSize = 5;

// Picture

/** Kind of a video notification; its arguments, those that are left out 0. */
enum VideoEvent : int32_t {
    /** Mode. */
    kVideoPictureMode = 1,
    /** Mode. */
    kVideoScreenMode = 2,
    /** Path, width, height, frames per second times 1000, interlaced; all 0 without video. */
    kVideoFormat = 3,
    /** Path, frozen. */
    kVideoFreeze = 4,
    /** Path, muted. */
    kVideoMute = 5,
    /** The four values. */
    kVideoOverscan = 6,
    /** VideoValue, value. */
    kVideoValueChanged = 7,
};

enum VideoValue : int32_t {
    /** Of the main picture, only read. */
    kVideoWidth = 1,
    kVideoHeight = 2,
    kVideoFrameRate = 3,
    kVideoInterlaced = 4,
    kVideoCodecValue = 5,
    kVideoAspect = 6,
    kVideoGameMode = 100,
    kVideoFilmMode = 101,
    /** 0 off to 3. */
    kVideoMotion = 102,
};

/** Video data. */
enum VideoData : int32_t {
    /** A VideoSource. */
    kVideoDataSource = 1,
    /** A DataRange. */
    kVideoDataRange = 4,
    /** Up to kVideoDataUserSize bytes that are kept and not looked at. */
    kVideoDataUser = 100,
};
constexpr uint32_t kVideoDataUserSize = 256;

/** Brightness of what is shown, in 8-bit steps. */
struct DataRange {
    /** 0 limited (16 to 235), 1 full. */
    uint32_t range;
    uint32_t minimum;
    uint32_t maximum;
    uint32_t average;
};
static_assert(sizeof(DataRange) == 16);

/** Overscan: top, bottom, left, right, in thousandths of the picture. */
constexpr int32_t kOverscanMaximum = 100;

// Power

enum WakeReason : uint32_t {
    kWakeUnknown = 0,
    kWakeMains = 1,
    kWakeRemote = 2,
    kWakeTimer = 3,
    kWakeCec = 4,
    kWakeNetwork = 5,
    kWakePanel = 6,
};
constexpr uint32_t kWakeReasons = 7;
/** Wake-up setup: bit n allows reason n. */
constexpr uint32_t kWakeSetupMask = (1u << kWakeReasons) - 1;

enum PowerDownReason : uint32_t {
    kDownUnknown = 0,
    kDownRemote = 1,
    kDownSleepTimer = 2,
    kDownNoSignal = 3,
    kDownIdle = 4,
    kDownUpgrade = 5,
};
constexpr uint32_t kDownReasons = 6;

/** Condition of a power notification; its two arguments. */
enum PowerEvent : uint32_t {
    /** PowerDownReason, 0. */
    kPowerDown = 1,
    /** PowerDownReason, 0. */
    kPowerSuspend = 2,
    /** PowerDownReason, 0: somebody asks for a power-down; the television stays on. */
    kPowerDownRequested = 3,
    /** WakeReason, 0. */
    kPowerWake = 4,
    /** Line, level: a line that is monitored has changed. */
    kPowerGpio = 5,
};

/** GPIO lines. Those below kGpioOutputs are inputs. The second argument of a read is one of: */
constexpr uint32_t kGpioLines = 64;
constexpr uint32_t kGpioOutputs = 16;
enum GpioRead : uint32_t { kGpioLevel = 0, kGpioDirection = 1, kGpioMonitored = 2 };

// TV application

/** Kind of an application notification; its arguments, those that are left out 0. */
enum AppTvEvent : int32_t {
    /** Path, status. */
    kAppTvStatus = 1,
    /** Started. */
    kAppTvStarted = 2,
    /** Path, unlocked. */
    kAppTvUnlock = 3,
};

enum Capability : int32_t {
    kCapabilityTuners = 1,
    kCapabilityPaths = 2,
    kCapabilityInputs = 3,
    kCapabilityHdmi = 4,
    kCapabilityVolume = 5,
    /** Bit n for delivery system n of multiplex_record_t. */
    kCapabilitySystems = 6,
    kCapabilityTvModes = 7,
};

}  // namespace qeltvd::layouts
