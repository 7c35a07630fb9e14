"""A voice-announcement device on 127.0.0.1, for tests and demonstrations: FTP with partition accounts."""
