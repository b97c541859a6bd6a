/** The Common Interface of the reference television: values and sizes. It has one slot, 0. */
#ifndef QELTV_LAYOUTS_CI_H
#define QELTV_LAYOUTS_CI_H

#include <stdint.h>

/** Get types; the others that the client library sends are not supported. */
enum QELTV_CI_GET {
    QELTV_CI_GET_SLOT_STATE = 0,      /**< 32 bits: a QELTV_CI_SLOT_STATE */
    QELTV_CI_GET_CAM_NAME = 1,        /**< name of the CAM, UTF-8 without a terminator */
    QELTV_CI_GET_DIALOGUE = 2,        /**< 2 x 32 bits: a QELTV_CI_DIALOGUE and its number */
    QELTV_CI_GET_CA_SYSTEMS = 7,      /**< 16 bits for each CA system id */
    QELTV_CI_GET_SLOTS = 8,           /**< 8 bits: number of slots */
    QELTV_CI_GET_LANGUAGE = 10,       /**< 4 bytes: preferred language, see QELTV_CI_SET_LANGUAGE */
    QELTV_CI_GET_POWER = 13,          /**< 8 bits: 1 while the CAM is powered, else 0 */
    QELTV_CI_GET_CAM_NAME_UTF16 = 15, /**< name of the CAM in UTF-16 units */
};

/** Set types. */
enum QELTV_CI_SET {
    QELTV_CI_SET_OPEN_MENU = 0, /**< opens the CAM's menu */
    QELTV_CI_SET_CLOSE = 1,     /**< closes the CAM's dialogue */
    /** a QELTV_CI_ENQUIRY_ANSWER and the number of the dialogue in the record, and the text */
    QELTV_CI_SET_ENQUIRY_ANSWER = 2,
    /** 2 x 32 bits: number of the dialogue, choice from 1 or 0 for back */
    QELTV_CI_SET_MENU_ANSWER = 3,
    QELTV_CI_SET_RESET = 4,  /**< resets the CAM */
    QELTV_CI_SET_REMOVE = 5, /**< takes the CAM out of the slot, as a hand does */
    QELTV_CI_SET_INSERT = 6, /**< puts the CAM into the slot */
    /** the PIN that the television hands to the CAM; the CAM's reply is a notification */
    QELTV_CI_SET_PIN = 34,
    QELTV_CI_SET_LANGUAGE = 40, /**< 4 bytes: preferred language, ISO 639-2 and a zero */
    QELTV_CI_SET_POWER = 80,    /**< 8 bits: 0 switches the CAM off, 1 on */
};

/** State of the slot. */
enum QELTV_CI_SLOT_STATE {
    QELTV_CI_EMPTY = 0, /**< no CAM in the slot */
    QELTV_CI_OFF = 1,   /**< a CAM without power */
    QELTV_CI_READY = 2, /**< a CAM that is initialised */
};

/** Dialogue of the CAM. */
enum QELTV_CI_DIALOGUE {
    QELTV_CI_NO_DIALOGUE = 0,      /**< nothing */
    QELTV_CI_MENU_DIALOGUE = 1,    /**< a menu that waits for a choice */
    QELTV_CI_LIST_DIALOGUE = 2,    /**< a list to read */
    QELTV_CI_ENQUIRY_DIALOGUE = 3, /**< an enquiry that waits for a text */
};

/** Answer to an enquiry. */
enum QELTV_CI_ENQUIRY_ANSWER {
    QELTV_CI_CANCELLED = 0, /**< the viewer cancels it */
    QELTV_CI_ANSWERED = 1,  /**< the text is the answer */
};

/** Condition of a notification; its data. */
enum QELTV_CI_CONDITION {
    QELTV_CI_CARD_INSERTED = 0, /**< a CAM is inserted; 32 bits: the slot */
    QELTV_CI_CARD_REMOVED = 1,  /**< the CAM is removed; 32 bits: the slot */
    QELTV_CI_CARD_READY = 2,    /**< the CAM is initialised; 32 bits: the slot */
    QELTV_CI_ENQUIRY = 3,       /**< the CAM opens an enquiry; the enquiry record */
    QELTV_CI_MENU = 4,          /**< the CAM opens a menu; the menu record */
    QELTV_CI_LIST = 5,          /**< the CAM opens a list; the menu record, its choices to read */
    QELTV_CI_CLOSED = 6,        /**< the CAM closes its dialogue; 32 bits: the slot */
    QELTV_CI_PIN_REPLY = 7,     /**< 8 bits: 1 if the CAM accepts the PIN, 0 if it is wrong */
    QELTV_CI_KEY_CHANGED = 8,   /**< 8 bits: a QELTV_CI_KEY_STATE */
};

#define QELTV_CI_KEY_KINDS 4u       /**< kinds of key data; functions without a kind use 0 */
#define QELTV_CI_KEY_MINIMUM 16u    /**< smallest key data in bytes */
#define QELTV_CI_KEY_MAXIMUM 65536u /**< largest key data in bytes */

/** State of key data. */
enum QELTV_CI_KEY_STATE {
    QELTV_CI_KEY_NONE = 0,    /**< none is stored */
    QELTV_CI_KEY_WRITTEN = 1, /**< stored */
    QELTV_CI_KEY_ACTIVE = 2,  /**< stored and in use */
};

#define QELTV_CI_HOST_ID_SIZE 8 /**< bytes of the host id */

#endif /* QELTV_LAYOUTS_CI_H */
