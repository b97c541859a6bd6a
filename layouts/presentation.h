/**
 * Broadcast, inputs, multi-view, service contexts, sound, picture, power and TV application of the
 * reference television: values and records. Video paths are "main" (also "") and "sub";
 * a path as a number is 0 or 1. Truth values are 0 and 1.
 */
#ifndef QELTV_LAYOUTS_PRESENTATION_H
#define QELTV_LAYOUTS_PRESENTATION_H

#include <stdint.h>

#define QELTV_PATHS 2u /**< number of video paths */

/* Tuning */

/** Status of a video path. */
enum QELTV_TUNING_STATUS {
    QELTV_TUNING_STOPPED = 0,  /**< nothing is shown */
    QELTV_TUNING_SEARCHES = 1, /**< the tuner searches the signal, or the input its source */
    QELTV_TUNING_LOCKED = 2,   /**< the tuner has locked; the decoders start */
    QELTV_TUNING_PLAYS = 3,    /**< video and sound play */
    QELTV_TUNING_FAILED = 4,   /**< see the QELTV_TUNING_ERROR */
};

/** Error of a video path. */
enum QELTV_TUNING_ERROR {
    QELTV_TUNING_NO_ERROR = 0,   /**< no error */
    QELTV_TUNING_NO_SIGNAL = 1,  /**< no signal */
    QELTV_TUNING_SCRAMBLED = 2,  /**< the service is scrambled and cannot be descrambled */
    QELTV_TUNING_BLOCKED = 3,    /**< a locked channel or a blocked input */
    QELTV_TUNING_NO_SERVICE = 4, /**< the multiplex does not carry the service */
};

/**
 * Kind of a broadcast notification. The banner is 1 when the selection shows it, else 0.
 * @values channel, path, error:QELTV_TUNING_ERROR, banner
 */
enum QELTV_BROADCAST_EVENT {
    QELTV_BROADCAST_SELECTING = 1, /**< a channel change begins */
    QELTV_BROADCAST_LOCKED = 2,    /**< the tuner has locked */
    QELTV_BROADCAST_PLAYS = 3,     /**< video and sound play */
    QELTV_BROADCAST_FAILED = 4,    /**< the channel change failed */
    QELTV_BROADCAST_STOPPED = 5,   /**< the path is stopped */
    /** the signal of the playing channel is lost; QELTV_BROADCAST_SELECTING follows its return */
    QELTV_BROADCAST_SIGNAL_LOST = 6,
    QELTV_BROADCAST_BANNER = 7, /**< the banner appears (1) or disappears (0) @values visible */
    /** a digit is entered: number so far, its digits, 1 when it is complete
     *  @values number, digits, complete */
    QELTV_BROADCAST_DIGITS = 8,
    /** the favourite icon appears (1) or disappears (0) @values visible */
    QELTV_BROADCAST_FAVOURITE_ICON = 9,
};

/**
 * Service context of path 0; that of path n is QELTV_CONTEXT_OF_MAIN + n.
 *
 * Notifications of service contexts: the listener receives QELTV_BROADCAST_EVENT 1 to 6,
 * QELTV_TUNING_ERROR and path; the select notification QELTV_BROADCAST_EVENT, channel and
 * QELTV_TUNING_ERROR. The context of the path is notified, and every context that is open on it.
 */
#define QELTV_CONTEXT_OF_MAIN 1u

/** Attributes of get_connect_attr(). */
enum QELTV_CONNECT_ATTRIBUTE {
    QELTV_CONNECT_LOCKED = 1,        /**< 1 while the tuner is locked, else 0 */
    QELTV_CONNECT_LEVEL = 2,         /**< signal level, 0 to 100 */
    QELTV_CONNECT_QUALITY = 3,       /**< signal quality, 0 to 100 */
    QELTV_CONNECT_BIT_ERRORS = 4,    /**< errors in 10^9 bits */
    QELTV_CONNECT_FREQUENCY_KHZ = 5, /**< frequency in kHz */
    /** symbol rate in 1000 symbols per second; of terrestrial signals the bandwidth in kHz */
    QELTV_CONNECT_SYMBOL_RATE = 6,
    QELTV_CONNECT_MODULATION = 7, /**< modulation as in multiplex_record_t */
    QELTV_CONNECT_SYSTEM = 8,     /**< delivery system, CHANNEL_SYSTEM_ */
    QELTV_CONNECT_CHANNEL = 9,    /**< channel id */
    QELTV_CONNECT_LIST = 10,      /**< list id of the channel */
    QELTV_CONNECT_STATUS = 11,    /**< a QELTV_TUNING_STATUS */
    QELTV_CONNECT_ERROR = 12,     /**< a QELTV_TUNING_ERROR */
};

/** `head` of a frequency change. Its word1 is the frequency in kHz; word2 and word3 are ignored. */
typedef struct {
    uint32_t system;       /**< delivery system, CHANNEL_SYSTEM_; 0 for any */
    uint32_t polarisation; /**< as in multiplex_record_t; 0 for any */
    uint32_t unused[2];    /**< 0 */
} QELTV_FREQUENCY_HEAD_T;

/** Remote-control keys, the key codes of Android. The digits are 7 (for 0) to 16 (for 9). */
enum QELTV_KEY {
    QELTV_KEY_DIGIT_0 = 7,        /**< digit 0 */
    QELTV_KEY_DIGIT_9 = 16,       /**< digit 9 */
    QELTV_KEY_OK = 23,            /**< OK */
    QELTV_KEY_VOLUME_UP = 24,     /**< volume up */
    QELTV_KEY_VOLUME_DOWN = 25,   /**< volume down */
    QELTV_KEY_POWER = 26,         /**< power */
    QELTV_KEY_PERIOD = 56,        /**< separator of major and minor number */
    QELTV_KEY_MUTE = 164,         /**< mute */
    QELTV_KEY_INFO = 165,         /**< info, the banner */
    QELTV_KEY_CHANNEL_UP = 166,   /**< channel up */
    QELTV_KEY_CHANNEL_DOWN = 167, /**< channel down */
    QELTV_KEY_INPUT = 178,        /**< next input */
    QELTV_KEY_AUDIO_TRACK = 222,  /**< next audio track */
    QELTV_KEY_LAST_CHANNEL = 229, /**< the channel before the current one */
};

/* Inputs */

/** Type of an input. */
enum QELTV_INPUT_TYPE {
    QELTV_INPUT_TUNER = 0,     /**< the tuner */
    QELTV_INPUT_COMPOSITE = 1, /**< composite video */
    QELTV_INPUT_COMPONENT = 2, /**< component video */
    QELTV_INPUT_SCART = 3,     /**< SCART */
    QELTV_INPUT_VGA = 4,       /**< VGA */
    QELTV_INPUT_HDMI = 5,      /**< HDMI */
};

#define QELTV_INPUT_HAS_SIGNAL 1 /**< bit of the last byte of an input's record: has a signal */
#define QELTV_INPUT_MHL 2        /**< bit of the last byte of an input's record: has MHL */

#define QELTV_INPUT_LABELS 9     /**< number of labels; 0 is none */
#define QELTV_INPUT_LABEL_USER 8 /**< label that stands for the user's own name */

/** Form of an input's name. */
enum QELTV_NAME_FORM {
    QELTV_NAME_PLAIN = 0, /**< as printed beside the socket */
    QELTV_NAME_SHOWN = 1, /**< the label or the user's name where there is one */
};

/* Multi-view */

/** Mode of the screen. */
enum QELTV_TV_MODE {
    QELTV_TV_NORMAL = 0,             /**< the main path only */
    QELTV_TV_PICTURE_IN_PICTURE = 1, /**< picture-in-picture */
    QELTV_TV_SIDE_BY_SIDE = 2,       /**< both paths side by side */
};
#define QELTV_REGION_FULL 10000u /**< full width or height; regions in 1/10000 */
/** Resource of a video path. */
enum QELTV_VIDEO_RESOURCE {
    QELTV_RESOURCE_NONE = 0,         /**< nothing */
    QELTV_RESOURCE_PATH = 1,         /**< started with a video path */
    QELTV_RESOURCE_WITHOUT_PATH = 2, /**< started without a video path */
};

/* Service contexts */

/** Block of stream type 0: selects by channel id, or where that is 0 by the ids of the broadcast.
 */
typedef struct {
    uint32_t channel;     /**< channel id; 0 for the fields below */
    uint32_t list;        /**< list id; 0 for every list */
    uint16_t networkId;   /**< original network id */
    uint16_t streamId;    /**< transport stream id */
    uint16_t serviceId;   /**< service id */
    uint16_t reserved0;   /**< 0 */
    uint8_t reserved[48]; /**< 0 */
} QELTV_SELECT_CHANNEL_T;

/** Block of stream type 4. Without a block the first text is a channel number or an input's name.
 */
typedef struct {
    uint32_t source;      /**< number of the input */
    uint8_t reserved[28]; /**< 0 */
} QELTV_SELECT_INPUT_T;

/** Bit of the value beside a select request: shows the banner. */
#define QELTV_SELECT_WITH_BANNER 1u

/** Video format of a path. */
typedef struct {
    uint32_t width;        /**< width in pixels */
    uint32_t height;       /**< height in pixels */
    uint32_t frameRate;    /**< frames per second times 1000 */
    uint32_t interlaced;   /**< 1 for interlaced video, else 0 */
    uint32_t aspectWidth;  /**< first number of the aspect ratio, 16 of 16:9 */
    uint32_t aspectHeight; /**< second number of the aspect ratio, 9 of 16:9 */
    uint32_t codec;        /**< a QELTV_VIDEO_CODEC */
    uint32_t bits;         /**< bits of a sample, 8 or 10 */
    char text[36];         /**< "1920x1080i 25", zero-padded; empty when nothing plays */
    /** bit rate in kbit/s, of a stream the average since it is received; 0 unknown */
    uint32_t kbitPerSecond;
    uint8_t reserved[60]; /**< 0 */
} QELTV_VIDEO_SOURCE_T;

/** Video codec. */
enum QELTV_VIDEO_CODEC {
    QELTV_VIDEO_NONE = 0,  /**< no video */
    QELTV_VIDEO_MPEG2 = 1, /**< MPEG-2 */
    QELTV_VIDEO_AVC = 2,   /**< H.264 */
    QELTV_VIDEO_HEVC = 3,  /**< H.265 */
    QELTV_VIDEO_RAW = 4,   /**< uncompressed, of an input */
};

/** An audio track; also the audio information of a service context. */
typedef struct {
    uint32_t track;      /**< number of the track, from 1 */
    uint32_t pid;        /**< PID; 0 for an input */
    char language[4];    /**< ISO 639-2 code and a zero */
    uint8_t codec;       /**< a QELTV_AUDIO_CODEC */
    uint8_t channels;    /**< number of audio channels */
    uint8_t purpose;     /**< a QELTV_AUDIO_PURPOSE */
    uint8_t current;     /**< 1 for the track that plays, else 0 */
    uint32_t sampleRate; /**< sample rate in Hz */
    /** bit rate in kbit/s, of a stream the average since it is received; 0 unknown */
    uint32_t kbitPerSecond;
} QELTV_AUDIO_TRACK_T;

/** Audio codec. */
enum QELTV_AUDIO_CODEC {
    QELTV_AUDIO_MPEG = 1, /**< MPEG-1 layer 2 */
    QELTV_AUDIO_AC3 = 2,  /**< AC-3 */
    QELTV_AUDIO_AAC = 3,  /**< HE-AAC */
    QELTV_AUDIO_PCM = 4,  /**< PCM, of an input */
};
/** Purpose of an audio track. */
enum QELTV_AUDIO_PURPOSE {
    QELTV_AUDIO_MAIN = 0,        /**< main sound */
    QELTV_AUDIO_ORIGINAL = 1,    /**< original language */
    QELTV_AUDIO_DESCRIPTION = 2, /**< audio description */
};

/** Attributes of c_svctx_get(). */
enum QELTV_CONTEXT_ATTRIBUTE {
    QELTV_CONTEXT_PATH = 1,    /**< the path */
    QELTV_CONTEXT_CHANNEL = 2, /**< channel id; 0 for an input */
    QELTV_CONTEXT_STATUS = 3,  /**< two words: QELTV_TUNING_STATUS, QELTV_TUNING_ERROR */
    QELTV_CONTEXT_SOURCE = 4,  /**< number of the input */
    QELTV_CONTEXT_NAME = 5,    /**< name of the channel or input */
    /** added to stream << 8 | attribute: a stream attribute that was set */
    QELTV_CONTEXT_STREAM_ATTRIBUTE = 0x10000,
};
/** Streams of a service context. */
enum QELTV_STREAM {
    QELTV_STREAM_VIDEO = 0,    /**< video */
    QELTV_STREAM_AUDIO = 1,    /**< sound */
    QELTV_STREAM_SUBTITLE = 2, /**< subtitles */
};
/** Attribute of the audio stream, one word: selects a track. Other attributes are only kept. */
#define QELTV_STREAM_TRACK 1u

/** Connection attribute of 48 bytes. */
typedef struct {
    uint32_t path;         /**< the path */
    uint32_t source;       /**< number of the input */
    uint32_t status;       /**< a QELTV_TUNING_STATUS */
    uint32_t error;        /**< a QELTV_TUNING_ERROR */
    uint32_t channel;      /**< channel id; 0 for an input */
    uint32_t frequencyKHz; /**< frequency in kHz */
    uint32_t symbolRate;   /**< as QELTV_CONNECT_SYMBOL_RATE */
    uint32_t modulation;   /**< modulation as in multiplex_record_t */
    uint32_t system;       /**< delivery system, CHANNEL_SYSTEM_ */
    uint32_t level;        /**< signal level, 0 to 100 */
    uint32_t quality;      /**< signal quality, 0 to 100 */
    uint32_t bitErrors;    /**< errors in 10^9 bits */
} QELTV_CONNECTION_T;

/* Connection codes; the first five can be read, the others set. */
#define QELTV_CONNECTION_ALL 0xC1000004u        /**< a QELTV_CONNECTION_T */
#define QELTV_CONNECTION_LOCKED 0xC1000007u     /**< 1 while the tuner is locked, else 0 */
#define QELTV_CONNECTION_LEVEL 0xC1000008u      /**< signal level, 0 to 100 */
#define QELTV_CONNECTION_QUALITY 0xC100000Cu    /**< signal quality, 0 to 100 */
#define QELTV_CONNECTION_BIT_ERRORS 0xC1000013u /**< errors in 10^9 bits */
/** tunes: the first word is the frequency in kHz, the others are ignored */
#define QELTV_CONNECTION_FREQUENCY 0xC0000065u
#define QELTV_CONNECTION_REGION 0xC100021Fu /**< region of the picture, four words */
#define QELTV_CONNECTION_MUTE 0xC0000069u   /**< video mute, one word: 1 muted, 0 not */

/** Info blocks; those from QELTV_INFO_USER to QELTV_INFO_USER_LAST are set and kept per context. */
enum QELTV_INFO_CODE {
    QELTV_INFO_VIDEO = 1,         /**< a QELTV_VIDEO_SOURCE_T */
    QELTV_INFO_AUDIO = 2,         /**< a QELTV_AUDIO_TRACK_T */
    QELTV_INFO_CONNECTION = 3,    /**< a QELTV_CONNECTION_T */
    QELTV_INFO_SCREEN = 4,        /**< a QELTV_SCREEN_T */
    QELTV_INFO_USER = 0x100,      /**< first block of the application */
    QELTV_INFO_USER_LAST = 0x1ff, /**< last block of the application */
};

/** What the screen shows beside the pictures. The region is that of the context's path. */
typedef struct {
    uint32_t standby;     /**< 1 in standby, else 0 */
    uint32_t mode;        /**< a QELTV_TV_MODE */
    uint32_t x;           /**< left edge of the picture, in 1/QELTV_REGION_FULL */
    uint32_t y;           /**< upper edge of the picture */
    uint32_t width;       /**< width of the picture */
    uint32_t height;      /**< height of the picture */
    uint32_t banner;      /**< 1 while the banner is visible, else 0 */
    uint32_t soundPath;   /**< the path whose sound is heard */
    char digits[16];      /**< channel number entered so far, zero-padded */
    uint8_t reserved[16]; /**< 0 */
} QELTV_SCREEN_T;

/**
 * Condition of a source notification of a component; width and height in pixels.
 * @values width, height
 */
enum QELTV_SOURCE_DETECT {
    QELTV_SOURCE_DETECTED = 1, /**< the source has a signal */
    QELTV_SOURCE_LOST = 2,     /**< the source has no signal */
};
/** Types of stream components. */
enum QELTV_COMPONENT_TYPE {
    QELTV_COMPONENT_VIDEO = 0,    /**< video */
    QELTV_COMPONENT_AUDIO = 1,    /**< sound */
    QELTV_COMPONENT_SUBTITLE = 2, /**< subtitles */
};

/* Sound */

/** Output or sound whose volume is set. */
enum QELTV_VOLUME_TYPE {
    QELTV_VOLUME_SPEAKER = 0,     /**< speakers */
    QELTV_VOLUME_HEADPHONE = 1,   /**< headphones */
    QELTV_VOLUME_DIGITAL = 2,     /**< digital output */
    QELTV_VOLUME_DESCRIPTION = 3, /**< audio description */
    QELTV_VOLUME_BLUETOOTH = 4,   /**< Bluetooth headphones */
};
#define QELTV_VOLUME_TYPES 5     /**< number of volume types */
#define QELTV_VOLUME_MAXIMUM 100 /**< largest volume; the smallest is 0 */

/** Kind of an audio notification. */
enum QELTV_AUDIO_EVENT {
    QELTV_AUDIO_TRACKS_CHANGED = 1, /**< the number of tracks has changed @values path, tracks */
    QELTV_AUDIO_TRACK_SELECTED = 2, /**< a track is selected @values path, track */
    /** a volume has changed, 0 to 100 @values output:QELTV_VOLUME_TYPE, volume */
    QELTV_AUDIO_VOLUME = 3,
    /** sound is muted (1) or not (0) @values output:QELTV_VOLUME_TYPE, muted */
    QELTV_AUDIO_MUTE = 4,
    QELTV_AUDIO_EFFECT = 5, /**< the sound effect has changed @values effect */
    /** an audio value has changed @values item:QELTV_AUDIO_VALUE, value:signed */
    QELTV_AUDIO_VALUE_CHANGED = 6,
};

/** Audio values. */
enum QELTV_AUDIO_VALUE {
    QELTV_AUDIO_DESCRIPTION_ON = 1,     /**< 1 with audio description, else 0 */
    QELTV_AUDIO_DESCRIPTION_MIX = 2,    /**< volume of the description in the mix, 0 to 100 */
    QELTV_AUDIO_DELAY_MS = 3,           /**< delay of the sound in ms, 0 to 250 */
    QELTV_AUDIO_DIGITAL_OUT = 4,        /**< digital output: 0 automatic, 1 PCM, 2 unchanged */
    QELTV_AUDIO_DIALOGUE = 5,           /**< dialogue enhancement, 0 to 3 */
    QELTV_AUDIO_CURRENT_CODEC = 100,    /**< read only: QELTV_AUDIO_CODEC of the current track */
    QELTV_AUDIO_CURRENT_CHANNELS = 101, /**< read only: audio channels of the current track */
    QELTV_AUDIO_CURRENT_RATE = 102,     /**< read only: sample rate of the current track in Hz */
};

#define QELTV_AUDIO_EQUALISER 1       /**< audio data: the bands of the equaliser, -12 to 12 each */
#define QELTV_AUDIO_EQUALISER_SIZE 5u /**< bands of the equaliser, a signed byte each */

/* Picture */

/** Kind of a video notification. */
enum QELTV_VIDEO_EVENT {
    QELTV_VIDEO_PICTURE_MODE = 1, /**< the picture mode has changed @values mode */
    QELTV_VIDEO_SCREEN_MODE = 2,  /**< the screen mode has changed @values mode */
    /** the video format has changed: pixels, frames per second times 1000; 0 without video
     *  @values path, width, height, frame_rate, interlaced */
    QELTV_VIDEO_FORMAT = 3,
    QELTV_VIDEO_FREEZE = 4, /**< the picture is frozen (1) or not (0) @values path, frozen */
    QELTV_VIDEO_MUTE = 5,   /**< the picture is muted (1) or not (0) @values path, muted */
    /** the overscan has changed, in thousandths of the picture
     *  @values top, bottom, left, right */
    QELTV_VIDEO_OVERSCAN = 6,
    /** a video value has changed @values item:QELTV_VIDEO_VALUE, value:signed */
    QELTV_VIDEO_VALUE_CHANGED = 7,
};

/** Video values. */
enum QELTV_VIDEO_VALUE {
    QELTV_VIDEO_WIDTH = 1,       /**< read only: width of the main picture in pixels */
    QELTV_VIDEO_HEIGHT = 2,      /**< read only: height of the main picture in pixels */
    QELTV_VIDEO_FRAME_RATE = 3,  /**< read only: frames per second times 1000 */
    QELTV_VIDEO_INTERLACED = 4,  /**< read only: 1 for interlaced video, else 0 */
    QELTV_VIDEO_CODEC_VALUE = 5, /**< read only: a QELTV_VIDEO_CODEC */
    QELTV_VIDEO_ASPECT = 6,      /**< read only: aspect ratio */
    QELTV_VIDEO_GAME_MODE = 100, /**< 1 with game mode, else 0 */
    QELTV_VIDEO_FILM_MODE = 101, /**< 1 with film mode, else 0 */
    QELTV_VIDEO_MOTION = 102,    /**< motion compensation, 0 off to 3 */
};

/** Video data. */
enum QELTV_VIDEO_DATA {
    QELTV_VIDEO_DATA_SOURCE = 1, /**< a QELTV_VIDEO_SOURCE_T */
    QELTV_VIDEO_DATA_RANGE = 4,  /**< a QELTV_DATA_RANGE_T */
    QELTV_VIDEO_DATA_USER = 100, /**< bytes of the application, which are only kept */
};
#define QELTV_VIDEO_DATA_USER_SIZE 256u /**< most bytes of QELTV_VIDEO_DATA_USER */

/** Brightness of the picture, in 8-bit steps. */
typedef struct {
    uint32_t range;   /**< 0 limited (16 to 235), 1 full */
    uint32_t minimum; /**< darkest value, 0 to 255 */
    uint32_t maximum; /**< brightest value, 0 to 255 */
    uint32_t average; /**< mean value, 0 to 255 */
} QELTV_DATA_RANGE_T;

/** Largest overscan: top, bottom, left, right, in thousandths of the picture. */
#define QELTV_OVERSCAN_MAXIMUM 100

/* Power */

/** Why the television left standby. */
enum QELTV_WAKE_REASON {
    QELTV_WAKE_UNKNOWN = 0, /**< unknown */
    QELTV_WAKE_MAINS = 1,   /**< mains power */
    QELTV_WAKE_REMOTE = 2,  /**< remote control */
    QELTV_WAKE_TIMER = 3,   /**< a timer */
    QELTV_WAKE_CEC = 4,     /**< CEC */
    QELTV_WAKE_NETWORK = 5, /**< the network */
    QELTV_WAKE_PANEL = 6,   /**< a key of the panel */
};
#define QELTV_WAKE_REASONS 7u /**< number of wake reasons */
/** Mask of the wake-up setup; bit n allows reason n. */
#define QELTV_WAKE_SETUP_MASK ((1u << QELTV_WAKE_REASONS) - 1u)

/** Why the television powers down. */
enum QELTV_POWER_DOWN_REASON {
    QELTV_DOWN_UNKNOWN = 0,     /**< unknown */
    QELTV_DOWN_REMOTE = 1,      /**< remote control */
    QELTV_DOWN_SLEEP_TIMER = 2, /**< the sleep timer */
    QELTV_DOWN_NO_SIGNAL = 3,   /**< no signal for too long */
    QELTV_DOWN_IDLE = 4,        /**< no key for too long */
    QELTV_DOWN_UPGRADE = 5,     /**< an upgrade */
};
#define QELTV_DOWN_REASONS 6u /**< number of power-down reasons */

/** Condition of a power notification. */
enum QELTV_POWER_EVENT {
    QELTV_POWER_DOWN = 1,    /**< standby begins @values reason:QELTV_POWER_DOWN_REASON */
    QELTV_POWER_SUSPEND = 2, /**< suspend begins @values reason:QELTV_POWER_DOWN_REASON */
    /** a power-down is requested, the television stays on
     *  @values reason:QELTV_POWER_DOWN_REASON */
    QELTV_POWER_DOWN_REQUESTED = 3,
    QELTV_POWER_WAKE = 4, /**< standby ends @values reason:QELTV_WAKE_REASON */
    QELTV_POWER_GPIO = 5, /**< a monitored line changes @values line, level */
};

#define QELTV_GPIO_LINES 64u   /**< number of GPIO lines */
#define QELTV_GPIO_OUTPUTS 16u /**< first output; the lines below it are inputs */
/** Second argument of a GPIO read. */
enum QELTV_GPIO_READ {
    QELTV_GPIO_LEVEL = 0,     /**< level, 0 or 1 */
    QELTV_GPIO_DIRECTION = 1, /**< 0 input, 1 output */
    QELTV_GPIO_MONITORED = 2, /**< 1 while the line is monitored, else 0 */
};

/* TV application */

/** Kind of an application notification. */
enum QELTV_APP_TV_EVENT {
    QELTV_APP_TV_STATUS = 1,  /**< the application sets a path's status @values path, status */
    QELTV_APP_TV_STARTED = 2, /**< the application sets whether it has started @values started */
    QELTV_APP_TV_UNLOCK = 3,  /**< a path is unlocked (1) or locked (0) @values path, unlocked */
};

/** Capabilities of the television. */
enum QELTV_CAPABILITY {
    QELTV_CAPABILITY_TUNERS = 1,   /**< number of tuners */
    QELTV_CAPABILITY_PATHS = 2,    /**< number of video paths */
    QELTV_CAPABILITY_INPUTS = 3,   /**< number of inputs */
    QELTV_CAPABILITY_HDMI = 4,     /**< number of HDMI inputs */
    QELTV_CAPABILITY_VOLUME = 5,   /**< largest volume */
    QELTV_CAPABILITY_SYSTEMS = 6,  /**< bit n for CHANNEL_SYSTEM_ n */
    QELTV_CAPABILITY_TV_MODES = 7, /**< number of screen modes, QELTV_TV_MODE */
};

#endif /* QELTV_LAYOUTS_PRESENTATION_H */
