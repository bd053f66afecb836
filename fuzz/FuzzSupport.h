#pragma once

// Qt wants an application object for codecs and resources, and the answer
// encoder writes every answer to Qt's debug channel: both are set up once
// for a fuzzer, with the debug output silenced.
void prepareQtForFuzzing();

// Stops the fuzzer with a crash when an invariant is broken.
void require(bool condition);
