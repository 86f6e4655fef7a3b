#include "tin/open_surfaces.h"

#include <algorithm>
#include <new>

#include "host/qxbase.h"

namespace intake {

namespace {

constexpr int32_t kFirstSlots = 129;
constexpr int32_t kMoreSlots = 128;

// Slot 0 is not used.
struct Table {
    Tin** slots = nullptr;
    int32_t count = 0;
    int32_t lowestFree = 1;  // no slot below it is free
    int32_t current = 0;
};

Table table;

void makeRoom() {
    const int32_t wanted = table.count == 0 ? kFirstSlots : table.count + kMoreSlots;
    constexpr std::size_t kSlot = sizeof(Tin*);  // NOLINT(bugprone-sizeof-expression): a pointer
    void* memory = QX_Realloc(table.slots, static_cast<std::size_t>(wanted) * kSlot);
    if (!memory) throw std::bad_alloc();
    table.slots = static_cast<Tin**>(memory);
    std::fill(table.slots + table.count, table.slots + wanted, nullptr);
    table.count = wanted;
}

void freeTable() {
    for (int32_t slot = 1; slot < table.count; ++slot) {
        if (table.slots[slot]) closeTin(table.slots[slot]);
    }
    QX_Free(table.slots);
    table = {};
}

[[noreturn]] void refuse(const char* text) {
    mesrtnC("EndTin");
    fatalC(text);
}

}  // namespace

int32_t enterTin(Tin* tin) {
    int32_t slot = table.lowestFree;
    while (slot < table.count && table.slots[slot]) ++slot;
    if (slot >= table.count) makeRoom();
    table.slots[slot] = tin;
    table.lowestFree = slot + 1;
    table.current = slot;
    return slot;
}

Tin* currentTin() { return table.current != 0 ? table.slots[table.current] : nullptr; }

void EndTin(int32_t handle) {
    if (handle == 0) {
        freeTable();
        return;
    }
    if (handle < 0 || handle >= table.count) refuse("Invalid Tin handle value");
    if (!table.slots[handle]) refuse("Tin is closed");
    closeTin(table.slots[handle]);
    table.slots[handle] = nullptr;
    table.lowestFree = std::min(table.lowestFree, handle);
    if (table.current != handle) return;
    Tin** const end = table.slots + table.count;
    Tin** const open = std::find_if(table.slots + 1, end, [](Tin* tin) { return tin != nullptr; });
    table.current = open == end ? 0 : static_cast<int32_t>(open - table.slots);
}

}  // namespace intake
