// The sections of a DXF file around its entities. Test: tests/render/dxf/dxf_writer_test.cpp.
#pragma once

#include <cstdint>

#include "render/dxf/group_codes.h"
#include "render/dxf/page_tables.h"

namespace qm::dxf {

// HEADER, TABLES, BLOCKS and the head of ENTITIES. Returns the first handle that is free for
// entities.
std::uint64_t WriteFront(const PageTables& tables, const Placement& placement, GroupCodes& out);
// The end of ENTITIES, OBJECTS.
void WriteBack(GroupCodes& out);

}  // namespace qm::dxf
