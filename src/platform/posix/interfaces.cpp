// Definitions of the system's interface identifiers, which on Windows come from its uuid library.
#include "qmfilter/portable/interfaces.h"

#include "qmfilter/portable/stream.h"

extern "C" {
const GUID GUID_NULL = {};
const IID IID_IUnknown = __uuidof(IUnknown);
const IID IID_IDispatch = __uuidof(IDispatch);
const IID IID_IClassFactory = __uuidof(IClassFactory);
const IID IID_ISequentialStream = __uuidof(ISequentialStream);
const IID IID_IStream = __uuidof(IStream);
const IID IID_IEnumConnections = __uuidof(IEnumConnections);
const IID IID_IEnumConnectionPoints = __uuidof(IEnumConnectionPoints);
const IID IID_IConnectionPoint = __uuidof(IConnectionPoint);
const IID IID_IConnectionPointContainer = __uuidof(IConnectionPointContainer);
}
