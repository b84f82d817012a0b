.pragma library

// The public portal, for the documents; Endpoints.h has it for native code. The name never resolves on
// purpose.
var publicPortal = "http://portal.zemrik.example";
// What a list of portals that isn't a list falls back to.
var fallbackPortal = "http//portal.zemrik.example";
