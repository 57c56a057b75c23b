// A source that exists; nothing compiles it.
