// Declarations for checking types on other systems, written from Apple's public documentation; nothing is
// ever linked or run with them, and on a Mac nobody sees them.
// Here: what GNUstep's AppKit lacks of Apple's.
#pragma once

#include_next <AppKit/AppKit.h>

// macOS 10.15, NSWorkspace.OpenConfiguration.
@interface NSWorkspaceOpenConfiguration : NSObject <NSCopying>
+ (instancetype)configuration;
@property (assign) BOOL activates;
@end

@interface NSWorkspace (KalvaroPruefung)
@property (class, readonly) NSWorkspace *sharedWorkspace;
@property (readonly) NSNotificationCenter *notificationCenter;
@property (readonly) NSArray<NSRunningApplication *> *runningApplications;
- (void)openApplicationAtURL:(NSURL *)applicationURL
               configuration:(NSWorkspaceOpenConfiguration *)configuration
           completionHandler:(void (^)(NSRunningApplication *app, NSError *error))completionHandler;
@end

@interface NSApplication (KalvaroPruefung)
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy; // macOS 10.6
@property (strong) NSAppearance *appearance;                                 // macOS 10.14
@end
