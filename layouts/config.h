/** Groups, flags and limits of the named configuration items of the reference television. */
#ifndef QELTV_LAYOUTS_CONFIG_H
#define QELTV_LAYOUTS_CONFIG_H

/**
 * Bytes of a text item at most; a longer one is refused with QELTV_BAD_VALUE. A buffer of zeros
 * that is larger by one byte takes every text item with its terminator.
 */
#define QELTV_CONFIG_TEXT_MAXIMUM 4095

/** Group of an item; a function that takes one as its selector covers only the items in it. */
enum QELTV_CONFIG_GROUP {
    QELTV_CONFIG_ANY_GROUP = 0, /**< every group; no item's own */
    QELTV_CONFIG_PICTURE = 1,   /**< names that begin with "picture." */
    QELTV_CONFIG_SOUND = 2,     /**< names that begin with "sound." */
    QELTV_CONFIG_CHANNELS = 3,  /**< names that begin with "channels." */
    QELTV_CONFIG_PARENTAL = 4,  /**< names that begin with "parental." */
    QELTV_CONFIG_SYSTEM = 5,    /**< names that begin with "system." */
    QELTV_CONFIG_NETWORK = 6,   /**< names that begin with "network." */
};

/** Flag of a change that clients are not notified of. */
#define QELTV_CONFIG_QUIET 1u

/** First value of a notification of an item. */
enum QELTV_CONFIG_EVENT {
    QELTV_CONFIG_VALUE_CHANGED = 1, /**< the item has a new value */
};

#endif /* QELTV_LAYOUTS_CONFIG_H */
