#pragma once
/// @file
/// Root of the serialisable classes: a virtual destructor and a Serialize that stores or loads
/// the object through an archive. The root itself has nothing to store.

#include "basics/companion/UtilityBasicsClassExport.h"

class KvBtArchive;

class KVBT_API KvBtObject {
 public:
  KvBtObject() = default;
  KvBtObject(const KvBtObject&) = default;
  KvBtObject& operator=(const KvBtObject&) = default;
  virtual ~KvBtObject();
  virtual void Serialize(KvBtArchive& ar);
};
