// The TIN layer: what the command layer keeps beside the open surfaces.
#ifndef TIN_LAYER_H
#define TIN_LAYER_H

namespace intake {

// The no-data value of a node's z, once TININI has fetched it.
float noDataZ();

}  // namespace intake

#endif
