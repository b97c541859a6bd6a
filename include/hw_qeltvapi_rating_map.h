/** The rating of a programme as display texts, which the event and the rating family read. */
#ifndef HW_QELTVAPI_RATING_MAP_H
#define HW_QELTVAPI_RATING_MAP_H

/**
 * Three texts. The library stores up to 64, 32 and 255 characters and pads with zeros up to there,
 * but never writes the last byte of a field: clear the record before the call.
 */
typedef struct {
    char first[65];  /**< service-defined; reference television: label of the rating */
    char second[33]; /**< service-defined; reference television: rating system */
    char third[256]; /**< service-defined; reference television: description */
} QELTVAPI_RATING_MAP_T;

#endif /* HW_QELTVAPI_RATING_MAP_H */
