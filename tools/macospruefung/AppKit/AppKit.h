// For the check on other systems alone (cmake/macospruefung.cmake), written from Apple's public
// documentation. On a Mac nobody sees it. Here: what GNUstep's AppKit lacks of Apple's.
#pragma once

#include_next <AppKit/AppKit.h>

// macOS 10.15.
@interface NSWorkspaceOpenConfiguration : NSObject
+ (instancetype)configuration;
@property BOOL activates;
@end

@interface NSWorkspace (KalvaroPruefung)
- (void)openApplicationAtURL:(NSURL *)applicationURL
               configuration:(NSWorkspaceOpenConfiguration *)configuration
           completionHandler:(void (^)(NSRunningApplication *app, NSError *error))completionHandler;
@end

@interface NSApplication (KalvaroPruefung)
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy; // macOS 10.6
@property(strong) NSAppearance *appearance;                                  // macOS 10.14
@end
