/**
 * The channel data's records as this television lays them out; all numbers are little-endian and
 * naturally aligned, texts are UTF-8, zero-padded and end in a zero.
 *
 * For programs that look into what the functions of hw_qeltvapi_channellist.h,
 * hw_qeltvapi_dvbsconfig.h, hw_qeltvapi_bisskey.h, hw_svl.h, hw_tsl.h and hw_iom.h move.
 */
#ifndef QELTVD_LAYOUTS_CHANNEL_RECORDS_H
#define QELTVD_LAYOUTS_CHANNEL_RECORDS_H

#include <stdint.h>

/* Ids of the lists: service, transport-stream, network and logical-order list of a medium share
 * one; the satellite list and the BISS key list have that of the satellites. */
#define CHANNEL_LIST_AIR 1u
#define CHANNEL_LIST_CABLE 2u
#define CHANNEL_LIST_SATELLITE 3u

/* Broadcast types. */
#define CHANNEL_BROADCAST_ANY 0
#define CHANNEL_BROADCAST_DVB 1
#define CHANNEL_BROADCAST_ATSC 2
#define CHANNEL_BROADCAST_ISDB 3

/* Types of services. */
#define CHANNEL_SERVICE_TELEVISION 1
#define CHANNEL_SERVICE_RADIO 2
#define CHANNEL_SERVICE_DATA 3

/* Flags of a channel; the masks and values of the queries by mask are made of them. */
#define CHANNEL_FLAG_VISIBLE 0x1u   /**< shown in lists */
#define CHANNEL_FLAG_LOCKED 0x2u    /**< asks for the parental password */
#define CHANNEL_FLAG_SCRAMBLED 0x4u /**< needs a CAM or a key */
#define CHANNEL_FLAG_SKIPPED 0x8u   /**< left out of zapping */
#define CHANNEL_FLAG_NEW 0x10u      /**< found by the last scan */
#define CHANNEL_FLAG_HD 0x20u
#define CHANNEL_FLAG_LCN 0x40u     /**< the number was broadcast */
#define CHANNEL_FLAG_RENAMED 0x80u /**< the name is the user's; scans keep it */
#define CHANNEL_FLAG_FAVOURITE_1 0x100u
#define CHANNEL_FLAG_FAVOURITE_2 0x200u
#define CHANNEL_FLAG_FAVOURITE_3 0x400u
#define CHANNEL_FLAG_FAVOURITE_4 0x800u
#define CHANNEL_FLAGS_FAVOURITE 0xf00u

/* Filters: types of services (none: all types) and conditions that all have to hold. Hidden
 * channels pass only where told. */
#define CHANNEL_FILTER_TELEVISION 0x1u
#define CHANNEL_FILTER_RADIO 0x2u
#define CHANNEL_FILTER_DATA 0x4u
#define CHANNEL_FILTER_FAVOURITE 0x10u /**< in any favourite list */
#define CHANNEL_FILTER_FREE 0x20u
#define CHANNEL_FILTER_SCRAMBLED 0x40u
#define CHANNEL_FILTER_UNLOCKED 0x80u
#define CHANNEL_FILTER_HIDDEN 0x100u  /**< hidden channels too */
#define CHANNEL_FILTER_ZAPPING 0x200u /**< not those that are skipped */

/* List modes. */
#define CHANNEL_LIST_MODE_BROADCAST 0 /**< one list for each medium */
#define CHANNEL_LIST_MODE_ONE 1       /**< one list of all */

/* Delivery systems. */
#define CHANNEL_SYSTEM_DVBT 1
#define CHANNEL_SYSTEM_DVBT2 2
#define CHANNEL_SYSTEM_DVBC 3
#define CHANNEL_SYSTEM_DVBS 4
#define CHANNEL_SYSTEM_DVBS2 5
#define CHANNEL_SYSTEM_ATSC 6
#define CHANNEL_SYSTEM_CLEAR_QAM 7
#define CHANNEL_SYSTEM_ISDBT 8

/** Service-list record: one channel. */
typedef struct {
    uint16_t list;
    uint16_t reserved0;
    uint32_t record_id;
    uint32_t channel_id;
    uint32_t number; /**< what the viewer dials: a number, or major << 16 | minor */
    uint32_t flags;  /**< CHANNEL_FLAG_ */
    uint32_t tsl_record_id;
    uint16_t original_network_id;
    uint16_t stream_id;
    uint16_t service_id;
    uint16_t pmt_pid;
    uint16_t pcr_pid;
    uint16_t video_pid;
    uint16_t audio_pid;
    uint8_t service_type;   /**< CHANNEL_SERVICE_ */
    uint8_t broadcast_type; /**< CHANNEL_BROADCAST_ */
    char name[128];
    char provider[64];
    char language[4];
    uint8_t reserved1[160];
} channel_record_t;

/** Transport-stream record: one multiplex. */
typedef struct {
    uint16_t list;
    uint16_t reserved0;
    uint32_t record_id;
    uint32_t satellite_record_id; /**< 0 for none */
    uint32_t network_record_id;
    uint32_t frequency_low; /**< Hz, low and high half of 64 bits */
    uint32_t frequency_high;
    uint32_t symbol_rate; /**< symbols per second; 0 for terrestrial signals */
    uint32_t bandwidth;   /**< Hz; of terrestrial signals */
    uint8_t system;       /**< CHANNEL_SYSTEM_ */
    uint8_t modulation;   /**< 0 auto, 1 QPSK, 2 8PSK, 3 16APSK, 4 32APSK, 5 to 9 16 to 256 QAM,
                               10 8VSB, 11 16VSB */
    uint8_t polarisation; /**< 0 none, 1 horizontal, 2 vertical, 3 left, 4 right */
    uint8_t code_rate;    /**< two hexadecimal digits, 0x34 for 3/4; 0 automatic */
    uint16_t original_network_id;
    uint16_t network_id;
    uint16_t stream_id;
    uint16_t rf_channel; /**< of ATSC */
    char name[128];
    uint8_t reserved1[456];
} multiplex_record_t;

/** Favourite-list record: the current favourite list. */
typedef struct {
    uint32_t list_index;         /**< which favourite list, from 0 */
    uint32_t count;              /**< channels in it; the record holds the first 200 */
    uint32_t current_channel_id; /**< 0 when the current channel is not in it */
    uint32_t current_index;      /**< index of the current channel; 0xffffffff for none */
    uint32_t reserved0;
    uint32_t channel_ids[200];
} favourite_list_record_t;

/** Satellite record. */
typedef struct {
    uint32_t record_id;
    int32_t position; /**< tenths of a degree, east positive */
    uint32_t low_oscillator_khz;
    uint32_t high_oscillator_khz;
    uint32_t switch_khz;
    uint8_t switch_port; /**< input of the DiSEqC switch from 1; 0 for no switch */
    uint8_t enabled;
    uint8_t reserved0[2];
    char name[128];
    uint8_t reserved1[124];
} satellite_record_t;

/** Network record. */
typedef struct {
    uint16_t list;
    uint16_t network_id;
    uint32_t record_id;
    uint32_t satellite_record_id; /**< 0 for none */
    char name[128];
    uint8_t reserved0[164];
} network_record_t;

/** What a BISS key is for; a service id of 0 stands for every service of the transponder. */
typedef struct {
    uint32_t frequency_khz;
    uint32_t symbol_rate; /**< symbols per second */
    uint16_t service_id;
    int16_t position;     /**< of the satellite, tenths of a degree, east positive */
    uint8_t polarisation; /**< as in multiplex_record_t */
    uint8_t reserved0[3];
} biss_header_t;

/** BISS key record. */
typedef struct {
    biss_header_t header;
    uint32_t record_id;
    uint8_t key[8];   /**< session word; bytes 3 and 7 are the sums of the three before them */
    uint8_t key_size; /**< 0 for no key, or 8 */
    uint8_t enabled;
    uint8_t reserved0[2];
} biss_record_t;

/* What a write of a pair of records takes from the records; without any of them it only sets the
 * flags under the mask. */
#define CHANNEL_WRITE_NAME 0x1u    /**< the name, which then is the user's */
#define CHANNEL_WRITE_NUMBER 0x2u  /**< the number */
#define CHANNEL_WRITE_FLAGS 0x4u   /**< all flags but the favourites */
#define CHANNEL_WRITE_SERVICE 0x8u /**< type, ids, PIDs, provider, language, multiplex */
#define CHANNEL_WRITE_STREAM 0x10u /**< the transport-stream record too; of record id 0: add it */
#define CHANNEL_WRITE_ALL 0x1fu

/* Access of the locks. */
#define CHANNEL_LOCK_WRITE 0
#define CHANNEL_LOCK_READ 1

/* Operations of a write of a BISS key record, and the type of the notification (list id, channel
 * id, 0, record id) that a key is in use. */
#define CHANNEL_BISS_WRITE 0
#define CHANNEL_BISS_DELETE 1
#define CHANNEL_BISS_IN_USE 2

/* How a query of channels by query information looks for them. */
#define CHANNEL_QUERY_NUMBER 1  /**< value1: number */
#define CHANNEL_QUERY_SERVICE 2 /**< value1: network id << 16 | stream id; value2: service id */
#define CHANNEL_QUERY_FLAGS 3   /**< value1: mask; value2: value */
#define CHANNEL_QUERY_FILTER 4  /**< value1: CHANNEL_FILTER_ */
#define CHANNEL_QUERY_STREAM 5  /**< value1: record id of the transport stream */

/** Query information. */
typedef struct {
    uint32_t kind; /**< CHANNEL_QUERY_ */
    uint32_t value1;
    uint32_t value2;
} channel_query_t;

/* Requests of the channel-list interface, its first value; other values are refused. */
#define CHANNEL_REQUEST_RELOAD 1         /**< fill all lists from the region of the configuration */
#define CHANNEL_REQUEST_LIST_MODE 2      /**< set the list mode; word0 of the block */
#define CHANNEL_REQUEST_FAVOURITE_LIST 3 /**< make word0 the current favourite list */

/** Block of the channel-list interface. */
typedef struct {
    uint32_t word0;
    uint32_t word1;
} channel_request_t;

/* What a handle of a list is, in its high half; the low half is the list id. */
#define CHANNEL_HANDLE_SVL 0x5356u
#define CHANNEL_HANDLE_TSL 0x5453u
#define CHANNEL_HANDLE_SATL 0x5341u
#define CHANNEL_HANDLE_LOL 0x4c4fu
#define CHANNEL_HANDLE_BSL 0x4253u
#define CHANNEL_HANDLE_FAVOURITE 0x4656u /**< low half: favourite list << 8 | list id */

/* Types of the notification of channel-list changes: its values are list id, number of channels
 * concerned, version of the list, record id when one channel is concerned. The notifications of
 * the TV provider and of watched columns have the types CHANGED and REMOVED, the values list id,
 * number of channels and version, and the record ids as data, 32 bits each. */
#define CHANNEL_UPDATE_CHANGED 1
#define CHANNEL_UPDATE_REMOVED 2
#define CHANNEL_UPDATE_LIST 3    /**< the list as a whole */
#define CHANNEL_UPDATE_CURRENT 4 /**< second value: channel id of the current channel */
#define CHANNEL_UPDATE_CURRENT_2ND 5
#define CHANNEL_UPDATE_FAVOURITES 6 /**< first value: index of the favourite list */
/** Answer to a request for RF information: list id, channel id, frequency in kHz,
 * CHANNEL_SYSTEM_ << 16 | RF channel. */
#define CHANNEL_UPDATE_RF 7
/* Types of the notification of the transport-stream-list id: list id, records concerned, version,
 * record id when it is one. */
#define CHANNEL_UPDATE_STREAMS 1
#define CHANNEL_UPDATE_NETWORKS 2

/* The UART: operation codes of c_iom_get() and c_iom_set(). */
#define UART_OP_DATA 0    /**< get: received bytes; set: bytes to send */
#define UART_OP_SETTING 1 /**< uart_setting_t */
#define UART_OP_STATE 2   /**< get: uart_state_t */
#define UART_OP_FLUSH 3   /**< set: drop received bytes; no data */

/** UART setting, 16 bytes. */
typedef struct {
    uint32_t baud_rate;  /**< 1200 to 921600 */
    uint8_t data_bits;   /**< 7 or 8 */
    uint8_t parity;      /**< 0 none, 1 odd, 2 even */
    uint8_t stop_bits;   /**< 1 or 2 */
    uint8_t no_loopback; /**< 1: nothing comes back */
    uint32_t reserved[2];
} uart_setting_t;

typedef struct {
    uint64_t sent;     /**< bytes since opening */
    uint64_t received; /**< of these, come back */
    uint64_t lost;     /**< of these, dropped for lack of room */
    uint32_t waiting;  /**< not read yet */
    uint32_t reserved0;
} uart_state_t;

#ifdef __cplusplus
static_assert(sizeof(channel_record_t) == 396, "service-list record");
static_assert(sizeof(multiplex_record_t) == 628, "transport-stream record");
static_assert(sizeof(favourite_list_record_t) == 820, "favourite-list record");
static_assert(sizeof(satellite_record_t) == 276, "satellite record");
static_assert(sizeof(network_record_t) == 304, "network record");
static_assert(sizeof(biss_header_t) == 16, "BISS header");
static_assert(sizeof(biss_record_t) == 32, "BISS key record");
static_assert(sizeof(channel_query_t) == 12, "query information");
static_assert(sizeof(channel_request_t) == 8, "interface block");
static_assert(sizeof(uart_setting_t) == 16, "UART setting");
#endif

#endif /* QELTVD_LAYOUTS_CHANNEL_RECORDS_H */
