// Files that hold bytes which are not yet on disk. Each such file enters itself here, so that a
// companion can bring all of them to disk before an error unwinds.
#ifndef COMPANIONS_STORE_OPEN_FILES_H
#define COMPANIONS_STORE_OPEN_FILES_H

namespace store {

class Buffered {
  public:
    Buffered();
    virtual ~Buffered();
    Buffered(const Buffered&) = delete;
    Buffered& operator=(const Buffered&) = delete;
    // Brings everything to disk such that the file can be read as it is then.
    virtual void flush() = 0;

  private:
    friend void flushAll();
    Buffered* next_;
    Buffered** link_;
};

void flushAll();

}  // namespace store

#endif
