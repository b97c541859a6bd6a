/**
 * The channel data's records as the reference television lays them out; all numbers are
 * little-endian and naturally aligned, texts are UTF-8, zero-padded and end in a zero.
 *
 * For programs that read or fill the records of hw_qeltvapi_channellist.h,
 * hw_qeltvapi_dvbsconfig.h, hw_qeltvapi_bisskey.h, hw_svl.h, hw_tsl.h and hw_iom.h.
 */
#ifndef QELTV_LAYOUTS_CHANNEL_RECORDS_H
#define QELTV_LAYOUTS_CHANNEL_RECORDS_H

#include <stdint.h>

/* Ids of the lists. The service, transport-stream, network and logical-order list of a medium have
 * the same id; the satellite list and the BISS key list have that of the satellites. */
#define CHANNEL_LIST_AIR 1u       /**< terrestrial */
#define CHANNEL_LIST_CABLE 2u     /**< cable */
#define CHANNEL_LIST_SATELLITE 3u /**< satellite */

/* Broadcast types. */
#define CHANNEL_BROADCAST_ANY 0  /**< any type, in queries */
#define CHANNEL_BROADCAST_DVB 1  /**< DVB */
#define CHANNEL_BROADCAST_ATSC 2 /**< ATSC */
#define CHANNEL_BROADCAST_ISDB 3 /**< ISDB */

/* Types of services. */
#define CHANNEL_SERVICE_TELEVISION 1 /**< television service */
#define CHANNEL_SERVICE_RADIO 2      /**< radio service */
#define CHANNEL_SERVICE_DATA 3       /**< data service */

/* CHANNEL_FLAG_: flags of a channel, bits; the masks and values of the queries by mask consist of
 * them. */
#define CHANNEL_FLAG_VISIBLE 0x1u       /**< appears in lists */
#define CHANNEL_FLAG_LOCKED 0x2u        /**< requires the parental PIN */
#define CHANNEL_FLAG_SCRAMBLED 0x4u     /**< requires a CAM or a key */
#define CHANNEL_FLAG_SKIPPED 0x8u       /**< left out of zapping */
#define CHANNEL_FLAG_NEW 0x10u          /**< found by the last scan */
#define CHANNEL_FLAG_HD 0x20u           /**< in high definition */
#define CHANNEL_FLAG_LCN 0x40u          /**< the number is a broadcast LCN */
#define CHANNEL_FLAG_RENAMED 0x80u      /**< the name is the user's; scans keep it */
#define CHANNEL_FLAG_FAVOURITE_1 0x100u /**< in favourite list 0 */
#define CHANNEL_FLAG_FAVOURITE_2 0x200u /**< in favourite list 1 */
#define CHANNEL_FLAG_FAVOURITE_3 0x400u /**< in favourite list 2 */
#define CHANNEL_FLAG_FAVOURITE_4 0x800u /**< in favourite list 3 */
#define CHANNEL_FLAGS_FAVOURITE 0xf00u  /**< mask of the favourite lists */

/* Filters, bits: types of services (none: all types) and conditions that all must hold. Hidden
 * channels pass only with CHANNEL_FILTER_HIDDEN. */
#define CHANNEL_FILTER_TELEVISION 0x1u /**< television services */
#define CHANNEL_FILTER_RADIO 0x2u      /**< radio services */
#define CHANNEL_FILTER_DATA 0x4u       /**< data services */
#define CHANNEL_FILTER_FAVOURITE 0x10u /**< in any favourite list */
#define CHANNEL_FILTER_FREE 0x20u      /**< not scrambled */
#define CHANNEL_FILTER_SCRAMBLED 0x40u /**< scrambled */
#define CHANNEL_FILTER_UNLOCKED 0x80u  /**< not locked */
#define CHANNEL_FILTER_HIDDEN 0x100u   /**< hidden channels too */
#define CHANNEL_FILTER_ZAPPING 0x200u  /**< without skipped channels */

/* List modes. */
#define CHANNEL_LIST_MODE_BROADCAST 0 /**< one list for each medium */
#define CHANNEL_LIST_MODE_ONE 1       /**< one list of all channels */

/* Delivery systems. */
#define CHANNEL_SYSTEM_DVBT 1      /**< DVB-T */
#define CHANNEL_SYSTEM_DVBT2 2     /**< DVB-T2 */
#define CHANNEL_SYSTEM_DVBC 3      /**< DVB-C */
#define CHANNEL_SYSTEM_DVBS 4      /**< DVB-S */
#define CHANNEL_SYSTEM_DVBS2 5     /**< DVB-S2 */
#define CHANNEL_SYSTEM_ATSC 6      /**< ATSC, terrestrial */
#define CHANNEL_SYSTEM_CLEAR_QAM 7 /**< ATSC, unscrambled cable */
#define CHANNEL_SYSTEM_ISDBT 8     /**< ISDB-T */

/** Service-list record: one channel. */
typedef struct {
    uint16_t list;                /**< list id, CHANNEL_LIST_ */
    uint16_t reserved0;           /**< 0 */
    uint32_t record_id;           /**< id of the record in its list, from 1 */
    uint32_t channel_id;          /**< channel id, see channel_ids.h */
    uint32_t number;              /**< number that the viewer enters: one, or major << 16 | minor */
    uint32_t flags;               /**< CHANNEL_FLAG_ bits */
    uint32_t tsl_record_id;       /**< record id of its transport stream */
    uint16_t original_network_id; /**< original network id */
    uint16_t stream_id;           /**< transport stream id */
    uint16_t service_id;          /**< service id, program number */
    uint16_t pmt_pid;             /**< PID of the PMT, 0 to 0x1fff */
    uint16_t pcr_pid;             /**< PID of the PCR, 0 to 0x1fff */
    uint16_t video_pid;           /**< PID of the video; 0 for none */
    uint16_t audio_pid;           /**< PID of the first audio track; 0 for none */
    uint8_t service_type;         /**< CHANNEL_SERVICE_ */
    uint8_t broadcast_type;       /**< CHANNEL_BROADCAST_ */
    char name[128];               /**< name of the channel */
    char provider[64];            /**< name of the provider */
    char language[4];             /**< ISO 639-2 code of the first audio track and a zero */
    uint8_t reserved1[160];       /**< 0 */
} channel_record_t;

/** Transport-stream record: one multiplex. */
typedef struct {
    uint16_t list;                /**< list id, CHANNEL_LIST_ */
    uint16_t reserved0;           /**< 0 */
    uint32_t record_id;           /**< id of the record in its list, from 1 */
    uint32_t satellite_record_id; /**< record id of its satellite; 0 for none */
    uint32_t network_record_id;   /**< record id of its network; 0 for none */
    uint32_t frequency_low;       /**< low half of the frequency in Hz */
    uint32_t frequency_high;      /**< high half of the frequency in Hz */
    uint32_t symbol_rate;         /**< symbols per second; 0 for terrestrial signals */
    uint32_t bandwidth;           /**< bandwidth of terrestrial signals in Hz */
    uint8_t system;               /**< delivery system, CHANNEL_SYSTEM_ */
    uint8_t modulation;   /**< 0 auto, 1 QPSK, 2 8PSK, 3 16APSK, 4 32APSK, 5 to 9 16 to 256 QAM,
                               10 8VSB, 11 16VSB */
    uint8_t polarisation; /**< 0 none, 1 horizontal, 2 vertical, 3 left, 4 right */
    uint8_t code_rate;    /**< two hexadecimal digits, 0x34 for 3/4; 0 automatic */
    uint16_t original_network_id; /**< original network id */
    uint16_t network_id;          /**< network id */
    uint16_t stream_id;           /**< transport stream id */
    uint16_t rf_channel;          /**< RF channel of ATSC; 0 for others */
    char name[128];               /**< name of the multiplex */
    uint8_t reserved1[456];       /**< 0 */
} multiplex_record_t;

/** Favourite-list record: the current favourite list. */
typedef struct {
    uint32_t list_index;         /**< index of the favourite list, from 0 */
    uint32_t count;              /**< channels in it; the record holds the first 200 */
    uint32_t current_channel_id; /**< 0 when the current channel is not in it */
    uint32_t current_index;      /**< index of the current channel; 0xffffffff for none */
    uint32_t reserved0;          /**< 0 */
    uint32_t channel_ids[200];   /**< channel ids in the order of the list */
} favourite_list_record_t;

/** Satellite record. */
typedef struct {
    uint32_t record_id;           /**< id of the record, from 1 */
    int32_t position;             /**< tenths of a degree, east positive */
    uint32_t low_oscillator_khz;  /**< low local oscillator of the LNB in kHz */
    uint32_t high_oscillator_khz; /**< high local oscillator of the LNB in kHz */
    uint32_t switch_khz;          /**< lowest frequency of the high band in kHz */
    uint8_t switch_port;          /**< input of the DiSEqC switch from 1; 0 for no switch */
    uint8_t enabled;              /**< 1 when the user has enabled it, else 0 */
    uint8_t reserved0[2];         /**< 0 */
    char name[128];               /**< name of the satellite */
    uint8_t reserved1[124];       /**< 0 */
} satellite_record_t;

/** Network record. */
typedef struct {
    uint16_t list;                /**< list id, CHANNEL_LIST_ */
    uint16_t network_id;          /**< network id */
    uint32_t record_id;           /**< id of the record in its list, from 1 */
    uint32_t satellite_record_id; /**< record id of its satellite; 0 for none */
    char name[128];               /**< name of the network */
    uint8_t reserved0[164];       /**< 0 */
} network_record_t;

/** Header of a BISS key record: the use of the key. */
typedef struct {
    uint32_t frequency_khz; /**< frequency in kHz */
    uint32_t symbol_rate;   /**< symbols per second */
    uint16_t service_id;    /**< service id; 0 for every service of the transponder */
    int16_t position;       /**< position of the satellite, tenths of a degree, east positive */
    uint8_t polarisation;   /**< as in multiplex_record_t */
    uint8_t reserved0[3];   /**< 0 */
} biss_header_t;

/** BISS key record. */
typedef struct {
    biss_header_t header; /**< use of the key */
    uint32_t record_id;   /**< id of the record, from 1 */
    uint8_t key[8];       /**< session word; bytes 3 and 7 are the sums of the three before them */
    uint8_t key_size;     /**< 0 for no key, or 8 */
    uint8_t enabled;      /**< 1 when the key is used, else 0 */
    uint8_t reserved0[2]; /**< 0 */
} biss_record_t;

/* CHANNEL_WRITE_: fields that a write of a pair of records takes from the records, bits; without
 * any of them it only sets the flags under the mask. */
#define CHANNEL_WRITE_NAME 0x1u    /**< the name, which becomes the user's */
#define CHANNEL_WRITE_NUMBER 0x2u  /**< the number */
#define CHANNEL_WRITE_FLAGS 0x4u   /**< all flags except the favourites */
#define CHANNEL_WRITE_SERVICE 0x8u /**< type, ids, PIDs, provider, language, multiplex */
#define CHANNEL_WRITE_STREAM 0x10u /**< the transport-stream record too; record id 0 adds it */
#define CHANNEL_WRITE_ALL 0x1fu    /**< all of them */

/* Access of a lock. */
#define CHANNEL_LOCK_WRITE 0 /**< exclusive */
#define CHANNEL_LOCK_READ 1  /**< shared with other readers */

/* Operations of a write of a BISS key record, and the type of the notification that a key is in
 * use. */
#define CHANNEL_BISS_WRITE 0  /**< writes the record */
#define CHANNEL_BISS_DELETE 1 /**< deletes the record */
/** notification: the current channel uses a key; ids of the list, the channel and the key record
 *  @values list:CHANNEL_LIST_, channel, -, record */
#define CHANNEL_BISS_IN_USE 2

/* Kinds of queries by query information. */
#define CHANNEL_QUERY_NUMBER 1  /**< value1: number */
#define CHANNEL_QUERY_SERVICE 2 /**< value1: network id << 16 | stream id; value2: service id */
#define CHANNEL_QUERY_FLAGS 3   /**< value1: mask; value2: value */
#define CHANNEL_QUERY_FILTER 4  /**< value1: CHANNEL_FILTER_ bits */
#define CHANNEL_QUERY_STREAM 5  /**< value1: record id of the transport stream */

/** Query information. */
typedef struct {
    uint32_t kind;   /**< CHANNEL_QUERY_ */
    uint32_t value1; /**< first value of the kind */
    uint32_t value2; /**< second value of the kind; 0 for none */
} channel_query_t;

/* Requests of the channel-list interface, its first value; other values are refused. */
#define CHANNEL_REQUEST_RELOAD 1         /**< fills all lists from the configured region */
#define CHANNEL_REQUEST_LIST_MODE 2      /**< word0: CHANNEL_LIST_MODE_ */
#define CHANNEL_REQUEST_FAVOURITE_LIST 3 /**< word0: index of the new current favourite list */

/** Block of the channel-list interface. */
typedef struct {
    uint32_t word0; /**< value of the request */
    uint32_t word1; /**< 0 */
} channel_request_t;

/* Kinds of list handles, their high half; the low half is the list id. */
#define CHANNEL_HANDLE_SVL 0x5356u       /**< service list */
#define CHANNEL_HANDLE_TSL 0x5453u       /**< transport-stream list */
#define CHANNEL_HANDLE_SATL 0x5341u      /**< satellite list */
#define CHANNEL_HANDLE_LOL 0x4c4fu       /**< logical-order list */
#define CHANNEL_HANDLE_BSL 0x4253u       /**< BISS key list */
#define CHANNEL_HANDLE_FAVOURITE 0x4656u /**< low half: favourite list << 8 | list id */

/* Type of a notification of the channel list: list id, number of channels concerned, version of the
 * list, record id when one channel is concerned, else 0. The notifications of the TV provider and
 * of watched columns have the types CHANGED and REMOVED and the record ids as data, 32 bits each.
 * @values list:CHANNEL_LIST_, channels, version, record */
#define CHANNEL_UPDATE_CHANGED 1 /**< channels are new or changed */
#define CHANNEL_UPDATE_REMOVED 2 /**< channels are removed */
#define CHANNEL_UPDATE_LIST 3    /**< the list as a whole */
/** another current channel @values list:CHANNEL_LIST_, channel, version */
#define CHANNEL_UPDATE_CURRENT 4
/** another channel of the sub path @values list:CHANNEL_LIST_, channel, version */
#define CHANNEL_UPDATE_CURRENT_2ND 5
/** a favourite list: its index, number of its channels @values favourite_list, channels */
#define CHANNEL_UPDATE_FAVOURITES 6
/** answer to a request for RF information: list id, channel id, frequency in kHz,
 *  CHANNEL_SYSTEM_ << 16 | RF channel
 *  @values list:CHANNEL_LIST_, channel, frequency_khz, system_and_rf_channel */
#define CHANNEL_UPDATE_RF 7
/* CHANNEL_STREAM_UPDATE: type of a notification of the transport-stream-list id: list id, number of
 * records concerned, version of the list, record id when one record is concerned, else 0.
 * @values list:CHANNEL_LIST_, records, version, record */
#define CHANNEL_UPDATE_STREAMS 1  /**< transport streams */
#define CHANNEL_UPDATE_NETWORKS 2 /**< networks */

/* The UART: operation codes of c_iom_get() and c_iom_set(). */
#define UART_OP_DATA 0    /**< get: received bytes; set: bytes to send */
#define UART_OP_SETTING 1 /**< uart_setting_t */
#define UART_OP_STATE 2   /**< get: uart_state_t */
#define UART_OP_FLUSH 3   /**< set: drops received bytes; no data */

/** UART setting, 16 bytes. */
typedef struct {
    uint32_t baud_rate;   /**< 1200 to 921600 */
    uint8_t data_bits;    /**< 7 or 8 */
    uint8_t parity;       /**< 0 none, 1 odd, 2 even */
    uint8_t stop_bits;    /**< 1 or 2 */
    uint8_t no_loopback;  /**< 1 without the simulated loopback, else 0 */
    uint32_t reserved[2]; /**< 0 */
} uart_setting_t;

/** UART state. */
typedef struct {
    uint64_t sent;      /**< bytes sent since opening */
    uint64_t received;  /**< bytes of these that the loopback returned */
    uint64_t lost;      /**< bytes of these that a full buffer dropped */
    uint32_t waiting;   /**< bytes received and not read yet */
    uint32_t reserved0; /**< 0 */
} uart_state_t;

#endif /* QELTV_LAYOUTS_CHANNEL_RECORDS_H */
