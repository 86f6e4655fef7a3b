// The process-wide state of the library: what each file here gives up when an import starts or
// ends.
#ifndef COMPANIONS_QXFEAT_STATE_H
#define COMPANIONS_QXFEAT_STATE_H

namespace qxfeat {

// Closes every open file of features.
void closeFeatures();
void closeSubclassWalks();
void closeIndexes();
// Closes every open table and list of tables.
void closeTables();
void closeTableLists();

}  // namespace qxfeat

#endif
