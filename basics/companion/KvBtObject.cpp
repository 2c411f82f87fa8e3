#include "basics/companion/KvBtObject.h"

KvBtObject::~KvBtObject() = default;
void KvBtObject::Serialize(KvBtArchive&) {}
