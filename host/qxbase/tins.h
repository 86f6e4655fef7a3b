/* Reading back a surface (TIN): its environment, and its members in blocks. The engine that creates
 * and opens surfaces belongs to the importer and refuses one that is not whole; a program that
 * looks at a dataset goes this way, over the same member channels. It works on what is there: a
 * member that is missing or was cut off holds as many records as it has. */
#ifndef HOST_QXBASE_TINS_H
#define HOST_QXBASE_TINS_H

#include "host/qx_api.h"

QX_BEGIN

/* The environment record, as it lies in the file but for the byte order. */
typedef struct QxTinEnvironment {
    int32_t nodeCount;
    int32_t triangleCount;
    int32_t hullCount;
    int32_t digit; /* kept as it stood in the interchange file */
    int32_t secondTriangleCount;
    int32_t secondNodeCount;
    int32_t secondHullCount;
    float lowestZ;
    float highestZ;
    float reserved;
    double box[4];
    double fifthReal;
    double sixthReal;
    int32_t version; /* the bits of the version word: tinver_ tells what they mean */
    int32_t spare;
} QxTinEnvironment;

/* Members, by the file code of the newer generation. A surface of the older one has other names
 * and the same records. */
enum QxTinMember {
    QX_TIN_NODE_XY = 51,        /* two 64-bit reals: x, y */
    QX_TIN_NODE_Z = 52,         /* a 32-bit real */
    QX_TIN_TRIANGLE_NODES = 53, /* three 32-bit integers */
    QX_TIN_TRIANGLE_EDGES = 54, /* three 32-bit integers */
    QX_TIN_HULL = 55,           /* a 32-bit integer */
    QX_TIN_NODE_ID = 56,        /* a 32-bit integer */
    QX_TIN_MASK = 74            /* a 32-bit word: 32 bits, the highest first */
};

/* The version that a version word means, as an integer such as 60100. A word is that integer, or
 * the bits of a real: 6.1 is 60100. */
QX_API int32_t tinver_(const int32_t* word);

/* Opens a surface for reading. status not 0 if the path holds none. */
QX_API void tinopn_(int32_t* handle, const char* path, int32_t* status, int32_t pathLength);
/* Gives the environment in the program's byte order; status not 0 if the record is not there. */
QX_API void tinenv_(const int32_t* handle, QxTinEnvironment* environment, int32_t* status);
/* Records of a member, 0 for one that is missing. */
QX_API void tincnt_(const int32_t* handle, const int32_t* member, int64_t* count);
/* Reads at most capacity records of a member from record number first, from 1, in the program's
 * byte order. count is how many were read. */
QX_API void tinget_(const int32_t* handle, const int32_t* member, const int64_t* first,
                    const int32_t* capacity, void* records, int32_t* count);
QX_API void tincls_(const int32_t* handle);

QX_END

#endif
