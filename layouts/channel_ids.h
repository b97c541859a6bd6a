/**
 * Channel ids of the reference television. The two highest bits are the kind, the four below them
 * the list, the others the number:
 *
 *     one part   0 | list | 10 zeros     | number 16 bits
 *     two parts  1 | list | 6 zeros | major 10 bits | minor 10 bits
 *     non-PSIP   2 | list | 2 zeros | RF channel 8 bits | program number 16 bits
 *
 * 0 is no channel. The low 16 bits are the short id; they identify a channel of one list, except
 * two-part channels of a major number above 63 and non-PSIP channels.
 */
#ifndef QELTV_LAYOUTS_CHANNEL_IDS_H
#define QELTV_LAYOUTS_CHANNEL_IDS_H

/** Kind of a channel id. */
enum QELTV_CHANNEL_ID_KIND {
    QELTV_CHANNEL_ID_ONE_PART = 0,  /**< a number, as of DVB */
    QELTV_CHANNEL_ID_TWO_PARTS = 1, /**< major and minor number, as of ATSC */
    QELTV_CHANNEL_ID_NON_PSIP = 2,  /**< an ATSC service without PSIP: RF channel and program */
};

#define QELTV_CHANNEL_ID_KIND_SHIFT 30        /**< lowest bit of the kind */
#define QELTV_CHANNEL_ID_LIST_SHIFT 26        /**< lowest bit of the list */
#define QELTV_CHANNEL_ID_LIST_MASK 0xfu       /**< list, after the shift */
#define QELTV_CHANNEL_ID_NUMBER_MASK 0xffffu  /**< number of a one-part id */
#define QELTV_CHANNEL_ID_MAJOR_SHIFT 10       /**< lowest bit of the major number */
#define QELTV_CHANNEL_ID_PART_MASK 0x3ffu     /**< minor number; major number after the shift */
#define QELTV_CHANNEL_ID_RF_SHIFT 16          /**< lowest bit of the RF channel */
#define QELTV_CHANNEL_ID_RF_MASK 0xffu        /**< RF channel, after the shift */
#define QELTV_CHANNEL_ID_PROGRAM_MASK 0xffffu /**< program number of a non-PSIP id */

#define QELTV_CHANNEL_LIST_MAXIMUM 15u        /**< largest list id; the smallest is 1 */
#define QELTV_CHANNEL_NUMBER_MAXIMUM 0xffffu  /**< largest one-part number; the smallest is 1 */
#define QELTV_CHANNEL_PART_MAXIMUM 0x3ffu     /**< largest major and minor number */
#define QELTV_CHANNEL_RF_MAXIMUM 0xffu        /**< largest RF channel; the smallest is 1 */
#define QELTV_CHANNEL_PROGRAM_MAXIMUM 0xffffu /**< largest program number */

/**
 * Shift of the major number in a two-part number as the viewer enters it: major << 16 | minor. RF
 * channel and program number take their place in a non-PSIP channel.
 */
#define QELTV_CHANNEL_DIALLED_MAJOR_SHIFT 16

#endif /* QELTV_LAYOUTS_CHANNEL_IDS_H */
