#include "companions/qxfeat/dataset_parts.h"

#include <algorithm>

#include "companions/qxfeat/table_definition.h"
#include "companions/qxfeat/workspace_change.h"
#include "companions/store/folders.h"
#include "companions/store/member_names.h"
#include "host/qx_api.h"

namespace qxfeat {

namespace {

constexpr std::string_view kInfo = "info";

// The name of the dataset in whose folder a table's records lie; empty for none.
std::string hostOf(const std::string& info, const Listing& table) {
    TableDefinition definition;
    if (!definition.read(tableFile(info, table.number, "def"))) return {};
    return definition.externalPath.substr(0, definition.externalPath.find('/'));
}

bool isStored(const std::string& workspace, std::string_view name) {
    const std::string path = store::joinPath(workspace, name);
    return store::exists(path) && !store::isLink(path);
}

}  // namespace

bool isDatasetName(std::string_view name) {
    return !name.empty() && name != kInfo && name != "." && name != ".." &&
           name.find('/') == name.npos && name.find('\0') == name.npos && name.size() <= 255 &&
           name != kWorkFolders;
}

DatasetParts partsOf(std::string_view dataset) {
    DatasetParts parts;
    parts.workspace = store::directoryPart(dataset);
    parts.name = store::namePart(dataset);
    if (!isDatasetName(parts.name)) return parts;
    const std::string path = store::joinPath(parts.workspace, parts.name);
    parts.stored = isStored(parts.workspace, parts.name);
    if (parts.stored && store::isDirectory(path)) {
        for (const std::string& name : store::namesIn(path)) {
            parts.hasFolders = parts.hasFolders || store::isDirectory(store::joinPath(path, name));
        }
    }
    const std::string info = store::joinPath(parts.workspace, kInfo);
    if (!store::isDirectory(info)) return parts;
    for (const Catalogue::Entry& entry : readCatalogue(info).entries()) {
        const bool sameName = entry.name == parts.name;
        const std::string_view owner = entry.name.substr(0, entry.name.rfind('.'));
        if (!sameName && (!parts.stored || owner != parts.name)) continue;
        const Listing table{entry.number, std::string(entry.name)};
        const std::string host = hostOf(info, table);
        if (!parts.stored) {
            parts.ownedByAnother = isStored(parts.workspace, host.empty() ? owner : host);
        } else if (!host.empty() ? host != parts.name
                                 : !sameName && isStored(parts.workspace, entry.name)) {
            continue;
        }
        parts.tables.push_back(table);
    }
    return parts;
}

}  // namespace qxfeat
