#include "host/cli/transformation_record.h"

namespace cli {

namespace {

const V_TypedValT *Find(const V_TypedValsT &values, uint32_t index, int32_t kind) {
  return index < values.len && values.val[index].kind == kind ? &values.val[index] : nullptr;
}

std::string Text(const V_TypedValsT &values, uint32_t index) {
  const V_TypedValT *value = Find(values, index, V_KIND_STRING);
  return value && value->u.string ? value->u.string : "";
}

int32_t Number(const V_TypedValsT &values, uint32_t index) {
  const V_TypedValT *value = Find(values, index, V_KIND_INTEGER);
  return value ? value->u.integer : 0;
}

} // namespace

TransformationRecord ReadRecord(const V_TypedValsT &fields) {
  TransformationRecord record;
  if (const V_TypedValT *source = Find(fields, 1, V_KIND_TYPED_VALUES)) {
    record.usesInstruction = Number(source->u.values, 0) != 0;
    record.stylesheet = Text(source->u.values, 1);
  }
  record.processor = Text(fields, 2);
  if (const V_TypedValT *output = Find(fields, 4, V_KIND_TYPED_VALUES)) {
    record.output = static_cast<OutputPolicy>(Number(output->u.values, 0));
    record.folder = Text(output->u.values, 1);
    record.suffix = Text(output->u.values, 2);
  }
  return record;
}

} // namespace cli
