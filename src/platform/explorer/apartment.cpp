#include "platform/explorer/apartment.h"

#include <windows.h>

#include <ole2.h>

namespace tamrin {

Apartment::Apartment() : entered_(SUCCEEDED(OleInitialize(nullptr))) {}

Apartment::~Apartment() {
    if (entered_) OleUninitialize();
}

}  // namespace tamrin
