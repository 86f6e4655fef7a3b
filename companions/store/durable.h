// What is written can be made to last through a power cut, where INTAKE_SYNC=1 stands in the
// environment: the bytes of a file are on the disk when it is closed, its name behind them, and the
// names of folders and of what is moved or removed as soon as that is done. It takes some
// milliseconds a file, so nobody pays for it who has not asked.
#ifndef COMPANIONS_STORE_DURABLE_H
#define COMPANIONS_STORE_DURABLE_H

#include <string>

namespace store {

bool durable();

// While one lives everything is made to last, whether that is wished or not: for what would take
// with it what was there before.
class Lasting {
  public:
    Lasting();
    ~Lasting();
    Lasting(const Lasting&) = delete;
    Lasting& operator=(const Lasting&) = delete;
};

// Brings the folder in which a name was made, changed or removed to the disk, where that is wished.
// False, and noted as a failed write, if that failed.
bool settleName(const std::string& path);

}  // namespace store

#endif
